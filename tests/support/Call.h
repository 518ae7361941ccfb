// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Awaited.h"

#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/URLSession.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>

namespace quorvelkit::test {

/// The arguments of a completion handler, and its thread.
struct Result {
  std::optional<Data> data;
  std::shared_ptr<const URLResponse> response;
  std::optional<Error> error;
  std::thread::id thread;

  /// The status of the HTTP response, or 0 if there is none.
  int status() const;
  /// The URLError code of the error, or 0 if there is none.
  std::int64_t code() const { return error ? error->code() : 0; }
  std::string_view body() const { return data ? data->view() : std::string_view(); }
  /// A header field of the HTTP response.
  std::optional<std::string_view> header(std::string_view name) const;
};

URLRequest requestFor(std::string_view url, std::string_view method = "GET",
                      std::optional<std::string> body = std::nullopt);

/// A data task and its result.
class Call {
  Awaited<Result> result_;
  std::shared_ptr<std::atomic<int>> completions_ = std::make_shared<std::atomic<int>>(0);

 public:
  /// Creates a suspended task. The function runs in the completion handler, before the result is
  /// set.
  explicit Call(URLRequest request, const std::shared_ptr<URLSession>& session = URLSession::make(),
                std::function<void()> inHandler = nullptr);

  Result result() const { return result_.get(); }
  /// Waits for the result. Returns false if there is none within this time.
  bool isDone(std::chrono::milliseconds within = {}) const { return result_.waitFor(within); }
  int completions() const { return *completions_; }

  const std::shared_ptr<URLSessionDataTask> task;
};

/// Repeats a step, after a pause each time, until a call with this time-out has timed out because
/// it received nothing.
void repeatUntilTimeout(std::chrono::milliseconds timeout, std::chrono::milliseconds pause,
                        const std::function<void()>& step);

/// Sends a request and waits for its result.
Result send(URLRequest request, const std::shared_ptr<URLSession>& session = URLSession::make());

}  // namespace quorvelkit::test
