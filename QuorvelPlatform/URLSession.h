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

class SessionState;

/// Makes data tasks that share cookies and settings. Safe to use from any threads.
///
/// All sessions of a process share two threads, which start with the first task and take turns: one
/// is the IO thread, which transfers, the other the callback thread, which builds responses and
/// runs completion handlers one at a time.
/// In a process that may not start both, tasks fail with URLError::unknown; each later task tries
/// to start them again. With neither thread, completion handlers run on the main queue, which the
/// application has to drain.
/// At exit both are stopped and joined: from then on nothing is delivered, and handlers that have
/// not run are never destroyed. A child process made by fork has threads of its own with the first
/// task that it starts; tasks under way at the fork end in the parent alone.
class QUORVELKIT_EXPORT URLSession {
 public:
  /// Takes the outcome of a task: body and response (an HTTPURLResponse when an HTTP server
  /// answered, whatever its status) on success, the error alone on failure. An empty body is
  /// present and empty. Runs on the callback thread (on the main queue in a process that may start
  /// no thread), one at a time, and is destroyed there right after; a handler that must not be
  /// destroyed on that thread is moved out of by its body. An exception that leaves a handler is a
  /// programming error and stops the process.
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
  /// a programming error and stops the process. A task that is neither resumed nor cancelled never
  /// runs its handler and destroys it with itself.
  std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                               CompletionHandler completionHandler);

 private:
  explicit URLSession(std::shared_ptr<SessionState> state);

  std::shared_ptr<SessionState> state_;
};

}  // namespace quorvelkit
