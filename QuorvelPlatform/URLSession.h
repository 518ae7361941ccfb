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

/// Creates data tasks that share cookies and settings. Thread-safe.
///
/// All sessions of a process share two threads, which start with the first task. One of them is the
/// IO thread, which runs the transfers; the other one is the callback thread, which builds
/// responses and runs completion handlers one at a time. The threads can change these roles. If a
/// thread cannot be started, tasks fail with URLError::unknown; each further task tries again. If
/// no thread is running, completion handlers run on the main queue, which the application must run.
/// At exit the threads are stopped and joined. After that no completion handler runs, and handlers
/// that have not run are never destroyed. After fork(), the child process starts its own threads
/// with its first task; tasks that were running at the fork end only in the parent process.
class QUORVELKIT_EXPORT URLSession {
 public:
  /// Receives the result of a task. On success: body and response (an HTTPURLResponse if an HTTP
  /// server answered, with any status); an empty body is present and empty. On failure: only the
  /// error. Runs on the callback thread, or on the main queue if no thread can be started, and is
  /// destroyed there right after. To destroy captured objects on another thread, move them there
  /// in the handler. An exception is a programming error and stops the process.
  using CompletionHandler =
      std::function<void(std::optional<Data> data, std::shared_ptr<const URLResponse> response,
                         std::optional<Error> error)>;

  /// Makes a session with these settings.
  static std::shared_ptr<URLSession> make(
      URLSessionConfiguration configuration = URLSessionConfiguration::defaultConfiguration());

  URLSession(const URLSession&) = delete;
  URLSession& operator=(const URLSession&) = delete;
  /// Running tasks continue and complete without the session object.
  ~URLSession();

  /// The settings of the session.
  const URLSessionConfiguration& configuration() const noexcept;

  /// Creates a suspended task; URLSessionDataTask::resume() starts it. An empty handler is a
  /// programming error and stops the process. If the task is neither resumed nor cancelled, its
  /// handler never runs and is destroyed with the task.
  std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                               CompletionHandler completionHandler);

 private:
  explicit URLSession(std::shared_ptr<SessionState> state);

  std::shared_ptr<SessionState> state_;
};

}  // namespace quorvelkit
