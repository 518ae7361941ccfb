// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Backend.h"
#include "BatchAnswer.h"
#include "BatchInput.h"
#include "BatchOutput.h"
#include "Progress.h"

#include <QuorvelKit/Calls/QVRetryPolicy.h>
#include <QuorvelPlatform/EventLoops/PollEventLoop.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <random>
#include <stop_token>
#include <string>
#include <vector>

/// Runs a batch on the calling thread: reads requests, keeps a window of calls in flight, and
/// writes the answers. Memory: a bounded number of requests and answers.
class BatchJob {
 public:
  struct Settings {
    std::size_t inFlight = 64;
    double rate = 0;  // Requests per second. 0: no limit.
    std::int64_t retries = 8;
    bool isOrdered = true;
    std::string near;  // For requests without a position.
  };
  /// What ended the job, and its numbers.
  struct Summary {
    std::uint64_t answers = 0;
    std::uint64_t errors = 0;
    std::uint64_t earlierAnswers = 0;
    int signal = 0;  // SIGINT or SIGTERM, or 0.
  };

  /// `inputDescriptor` is open for reading. The objects are used until run() returns.
  BatchJob(const Backend& backend, const BatchKind& kind, const BatchFormatter& formatter,
           Settings settings, BatchInput input, int inputDescriptor, BatchOutput& output);

  /// Runs until the end of the input, or until SIGINT or SIGTERM: then it cancels the calls in
  /// flight. A second signal ends the process. Throws std::runtime_error or std::system_error if
  /// the input cannot be read or the output cannot be written.
  Summary run();

 private:
  using Clock = std::chrono::steady_clock;

  struct Item {
    std::uint64_t line;
    std::uint64_t sequence;  // The position in the order of the answers.
    BatchStart start;
    std::int64_t retry = 0;
    Clock::time_point due;  // Of the next attempt.
  };
  using ItemPointer = std::shared_ptr<Item>;

  bool isDone() const;
  bool mayStart(Clock::time_point now) const;
  void startCalls();
  ItemPointer nextItem(Clock::time_point now);
  ItemPointer nextFromInput();
  void start(const ItemPointer& item);
  void receive(const ItemPointer& item, const std::shared_ptr<quorvelkit::QVBaseResponse>& response,
               const std::optional<quorvelkit::QVNotSent>& notSent);
  bool repeatLater(const ItemPointer& item, const quorvelkit::QVBaseResponse& response);
  void write(std::uint64_t sequence, std::string line);
  void wait();
  int waitMilliseconds(Clock::time_point now) const;
  void readInput();
  void readSignal(int descriptor);
  void showProgress();

  const Backend& backend_;
  const BatchKind& kind_;
  const BatchFormatter& formatter_;
  const Settings settings_;
  BatchInput input_;
  const int inputDescriptor_;
  double inputSize_ = 0;  // 0 if unknown.
  double inputRead_ = 0;
  BatchOutput& output_;

  quorvelkit::PollEventLoop mainQueue_;
  int signalDescriptor_ = -1;
  std::stop_source stop_;
  const quorvelkit::QVRetryPolicy policy_;
  std::minstd_rand random_{std::random_device()()};

  std::size_t active_ = 0;            // Calls in flight, and those that wait for a retry.
  std::vector<ItemPointer> waiting_;  // For a retry.
  bool needsInput_ = true;
  Clock::time_point pausedUntil_;  // A server asks to wait.
  Clock::time_point nextStart_;    // By the rate.
  std::uint64_t firstSequence_ = 0;
  std::deque<std::optional<std::string>> window_;  // Answers from firstSequence_ on, in order.
  std::size_t windowBytes_ = 0;
  std::uint64_t skipped_ = 0;
  Summary summary_;
  Progress progress_;
};
