// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Data.h>
#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URLRequest.h>
#include <QuorvelPlatform/URLResponse.h>
#include <QuorvelPlatform/URLSessionConfiguration.h>
#include <QuorvelPlatform/URLSessionDataTask.h>

#include <functional>
#include <memory>
#include <optional>

namespace quorvelkit {

/// Makes data tasks that share connections, cookies and settings. Safe to use from any threads.
class QUORVELKIT_EXPORT URLSession {
 public:
  /// Takes the outcome of a task: body and response (an HTTPURLResponse when an HTTP server
  /// answered, whatever its status) on success, the error alone on failure. An empty body is
  /// present and empty. Runs on the session's callback thread, one at a time.
  using CompletionHandler =
      std::function<void(std::optional<Data> data, std::shared_ptr<const URLResponse> response,
                         std::optional<Error> error)>;

  static std::shared_ptr<URLSession> make(
      URLSessionConfiguration configuration = URLSessionConfiguration::defaultConfiguration());

  URLSession(const URLSession&) = delete;
  URLSession& operator=(const URLSession&) = delete;
  /// Tasks under way go on and complete; they need no session to hold.
  ~URLSession();

  const URLSessionConfiguration& configuration() const noexcept;

  /// A task for the request, suspended: URLSessionDataTask::resume starts it. An empty handler is
  /// a programming error and stops the process.
  std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                               CompletionHandler completionHandler);

 private:
  struct State;
  explicit URLSession(std::shared_ptr<State> state);

  std::shared_ptr<State> state_;
};

}  // namespace quorvelkit
