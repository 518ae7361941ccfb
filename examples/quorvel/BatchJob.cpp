// SPDX-License-Identifier: Apache-2.0
#include "BatchJob.h"

#include <QuorvelPlatform/HTTPURLResponse.h>

#include <signal.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iostream>
#include <stdexcept>
#include <system_error>

using namespace quorvelkit;

namespace {

/// Limits of the answers that wait for an earlier one, as a multiple of the calls in flight and in
/// bytes.
constexpr std::size_t windowFactor = 32;
constexpr std::size_t maxWindowBytes = std::size_t{64} << 20U;
constexpr std::size_t maxAheadBytes = 2 * maxWindowBytes;

/// Returns SIGINT and SIGTERM, but not one that the parent process set to be ignored.
sigset_t endSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM}) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
      sigaddset(&signals, signal);
  }
  return signals;
}

/// Receives SIGINT and SIGTERM by a descriptor, until the first one or the end of this object.
class SignalDescriptor {
 public:
  SignalDescriptor() {
    const sigset_t signals = endSignals();
    pthread_sigmask(SIG_BLOCK, &signals, &before_);
    value = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  }
  SignalDescriptor(const SignalDescriptor&) = delete;
  SignalDescriptor& operator=(const SignalDescriptor&) = delete;
  ~SignalDescriptor() {
    if (value != -1) close(value);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

  int value = -1;

 private:
  sigset_t before_{};
};

}  // namespace

BatchJob::BatchJob(const Backend& backend, const BatchKind& kind, const BatchFormatter& formatter,
                   Settings settings, BatchInput input, int inputDescriptor, BatchOutput& output)
    : backend_(backend),
      kind_(kind),
      formatter_(formatter),
      settings_(std::move(settings)),
      input_(std::move(input)),
      inputDescriptor_(inputDescriptor),
      output_(output),
      progress_(!output.isTerminal() && !backend.traces()) {
  struct stat status {};
  if (fstat(inputDescriptor, &status) == 0 && S_ISREG(status.st_mode))
    inputSize_ = static_cast<double>(status.st_size);
  summary_.earlierAnswers = output.earlierAnswerCount();
}

BatchJob::Summary BatchJob::run() {
  const SignalDescriptor signals;
  signalDescriptor_ = signals.value;
  if (!output_.hasContent() && !formatter_.header().empty())
    output_.add(formatter_.header() + '\n');
  while (true) {
    startCalls();
    output_.flush();
    if (isDone()) break;
    showProgress();
    wait();
  }
  progress_.clear();
  if (summary_.signal == 0 && skipped_ != output_.earlierAnswerCount()) {
    throw std::runtime_error(
        "The output has answers to lines that the input does not have: it belongs to another "
        "input.");
  }
  if (summary_.signal == 0) output_.removeAhead();
  return summary_;
}

bool BatchJob::isDone() const {
  if (active_ > 0) return false;
  return summary_.signal != 0 || (input_.hasEnded() && needsInput_);
}

bool BatchJob::mayStart(Clock::time_point now) const {
  return summary_.signal == 0 && now >= pausedUntil_ && now >= nextStart_;
}

void BatchJob::startCalls() {
  for (auto now = Clock::now(); mayStart(now); now = Clock::now()) {
    const ItemPointer item = nextItem(now);
    if (!item) return;
    if (settings_.rate > 0) {
      const auto interval = std::chrono::duration_cast<Clock::duration>(
          std::chrono::duration<double>(1 / settings_.rate));
      // A wait takes longer than its time-out; the next one is shorter by up to 5 ms for that.
      nextStart_ = std::max(nextStart_, now - std::chrono::milliseconds(5)) + interval;
    }
    start(item);
  }
}

BatchJob::ItemPointer BatchJob::nextItem(Clock::time_point now) {
  const auto due = std::find_if(waiting_.begin(), waiting_.end(),
                                [now](const ItemPointer& item) { return item->due <= now; });
  if (due != waiting_.end()) {
    auto item = *due;
    waiting_.erase(due);
    return item;
  }
  if (active_ >= settings_.inFlight || window_.size() >= windowFactor * settings_.inFlight ||
      windowBytes_ >= maxWindowBytes)
    return nullptr;
  auto item = nextFromInput();
  if (item) ++active_;
  return item;
}

/// Returns the next request that has no answer yet. Answers faulty ones.
BatchJob::ItemPointer BatchJob::nextFromInput() {
  while (auto record = input_.next()) {
    needsInput_ = false;
    if (output_.hasAnswer(record->line)) {
      ++skipped_;
      continue;
    }
    const std::uint64_t sequence = firstSequence_ + window_.size();
    if (settings_.isOrdered) window_.emplace_back();
    if (auto earlier = output_.takeAhead(record->line)) {
      ++skipped_;
      write(sequence, *std::move(earlier));
      continue;
    }
    if (!settings_.near.empty() && record->field("near").empty())
      record->fields["near"] = settings_.near;
    std::string fault = record->fault;
    for (const std::string& name : kind_.requiredInputs)
      if (fault.empty() && record->field(name).empty()) fault = name + " is missing";
    auto prepared = fault.empty() ? kind_.prepare(*record) : fault;
    if (auto* const startCall = std::get_if<BatchStart>(&prepared))
      return std::make_shared<Item>(Item{record->line, sequence, std::move(*startCall), 0, {}});
    ++summary_.errors;
    write(sequence, formatter_.errorLine(record->line, {std::get<std::string>(prepared), {}}));
    if (windowBytes_ >= maxWindowBytes) return nullptr;
  }
  needsInput_ = true;
  return nullptr;
}

void BatchJob::start(const ItemPointer& item) {
  QVCallOptions options;
  options.stopToken = stop_.get_token();
  item->start(options, [this, item](const auto& response, const auto& notSent) {
    receive(item, response, notSent);
  });
}

void BatchJob::receive(const ItemPointer& item, const std::shared_ptr<QVBaseResponse>& response,
                       const std::optional<QVNotSent>& notSent) {
  if (response) backend_.traceExchange(std::cerr, *response);
  // A line without an answer is asked again by --resume.
  if (summary_.signal != 0 && (!response || response->error())) {
    --active_;
    return;
  }
  if (response && repeatLater(item, *response)) return;
  --active_;
  const auto error = batchErrorOf(kind_, response, notSent);
  ++(error ? summary_.errors : summary_.answers);
  write(item->sequence, error ? formatter_.errorLine(item->line, *error)
                              : formatter_.answerLine(item->line, *response));
}

/// Plans another attempt after a transient error.
bool BatchJob::repeatLater(const ItemPointer& item, const QVBaseResponse& response) {
  if (!QVRetryPolicy::isTransient(response)) return false;
  const auto now = Clock::now();
  const auto* const answer = dynamic_cast<const HTTPURLResponse*>(response.response().get());
  if (answer != nullptr && (answer->statusCode() == 429 || answer->statusCode() == 503)) {
    if (const auto retryAfter = answer->retryAfter())
      pausedUntil_ = std::max(pausedUntil_, now + *retryAfter);
  }
  if (item->retry >= settings_.retries) return false;
  const double random = std::uniform_real_distribution<double>()(random_);
  item->due = now + policy_.backoff(item->retry++, random, response);
  waiting_.push_back(item);
  return true;
}

void BatchJob::write(std::uint64_t sequence, std::string line) {
  if (!settings_.isOrdered) return output_.add(line);
  if (sequence != firstSequence_) output_.addAhead(line);
  windowBytes_ += line.size();
  window_[static_cast<std::size_t>(sequence - firstSequence_)] = std::move(line);
  for (; !window_.empty() && window_.front(); ++firstSequence_) {
    output_.add(*window_.front());
    windowBytes_ -= window_.front()->size();
    window_.pop_front();
  }
  if (windowBytes_ > 0 && output_.aheadSize() <= maxAheadBytes) return;
  output_.clearAhead();
  for (const auto& waiting : window_)
    if (waiting) output_.addAhead(*waiting);
}

void BatchJob::wait() {
  const bool reads = needsInput_ && !input_.hasEnded() && summary_.signal == 0;
  std::array<pollfd, 3> entries{mainQueue_.pollable(),
                                {signalDescriptor_, POLLIN, 0},
                                {reads ? inputDescriptor_ : -1, POLLIN, 0}};
  poll(entries.data(), entries.size(), waitMilliseconds(Clock::now()));
  if (entries[1].revents != 0) readSignal(signalDescriptor_);
  if (entries[0].revents != 0) mainQueue_.handle();
  if (entries[2].revents != 0) readInput();
}

/// Returns the time until something else than an event is to be done, or -1 for never.
int BatchJob::waitMilliseconds(Clock::time_point now) const {
  auto until = Clock::time_point::max();
  if (progress_.isShown()) until = now + std::chrono::milliseconds(200);
  for (const ItemPointer& item : waiting_)
    until = std::min(until, std::max(item->due, std::max(nextStart_, pausedUntil_)));
  const auto mayStartAt = std::max(nextStart_, pausedUntil_);
  if (mayStartAt > now) until = std::min(until, mayStartAt);
  if (until == Clock::time_point::max()) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - now).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000));
}

void BatchJob::readInput() {
  std::array<char, 65536> piece{};
  const ssize_t size = read(inputDescriptor_, piece.data(), piece.size());
  if (size < 0 && errno != EINTR && errno != EAGAIN)
    throw std::system_error(errno, std::generic_category(), "The input cannot be read");
  if (size < 0) return;
  if (size == 0) input_.end();
  needsInput_ = false;
  input_.append({piece.data(), static_cast<std::size_t>(size)});
  inputRead_ += static_cast<double>(size);
}

/// Cancels what is in flight. Another signal then has its default effect.
void BatchJob::readSignal(int descriptor) {
  signalfd_siginfo info{};
  if (read(descriptor, &info, sizeof info) != static_cast<ssize_t>(sizeof info)) return;
  summary_.signal = static_cast<int>(info.ssi_signo);
  const sigset_t signals = endSignals();
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  active_ -= waiting_.size();
  waiting_.clear();
  stop_.request_stop();
}

void BatchJob::showProgress() {
  Progress::State state{summary_.answers, summary_.errors, std::nullopt,
                        Clock::now() < pausedUntil_};
  if (inputSize_ > 0)
    state.part = (inputRead_ - static_cast<double>(input_.unreadSize())) / inputSize_;
  progress_.update(state, Clock::now());
}
