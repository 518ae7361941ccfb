// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Awaited.h"

#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/URLSession.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>

namespace quorvelkit::test {

/// What a completion handler was given, and where.
struct Result {
  std::optional<Data> data;
  std::shared_ptr<const URLResponse> response;
  std::optional<Error> error;
  std::thread::id thread;

  /// The status of an HTTP response, 0 without one.
  int status() const;
  /// The code of the error, one of URLError, 0 without one.
  std::int64_t code() const { return error ? error->code() : 0; }
  std::string_view body() const { return data ? data->view() : std::string_view(); }
  /// A field of an HTTP response.
  std::optional<std::string_view> header(std::string_view name) const;
};

URLRequest requestFor(std::string_view url, std::string_view method = "GET",
                      std::optional<std::string> body = std::nullopt);

/// A task together with its result.
class Call {
  Awaited<Result> result_;
  std::shared_ptr<std::atomic<int>> completions_ = std::make_shared<std::atomic<int>>(0);

 public:
  /// A suspended task; the function runs inside the completion handler, before the result is set.
  explicit Call(URLRequest request, const std::shared_ptr<URLSession>& session = URLSession::make(),
                std::function<void()> inHandler = nullptr);

  Result result() const { return result_.get(); }
  /// Whether it is done, now or within so much time.
  bool isDone(std::chrono::milliseconds within = {}) const { return result_.waitFor(within); }
  int completions() const { return *completions_; }

  const std::shared_ptr<URLSessionDataTask> task;
};

/// Sends a request and waits for its result.
Result send(URLRequest request, const std::shared_ptr<URLSession>& session = URLSession::make());

}  // namespace quorvelkit::test
