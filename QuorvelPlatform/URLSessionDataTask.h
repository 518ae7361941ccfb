// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URLRequest.h>

#include <memory>

namespace quorvelkit {

/// One transfer. Its completion handler runs exactly once for a task that was resumed or
/// cancelled, on the session's callback thread (URLSession), never inside resume() or cancel(); the
/// task lets go of the handler once that has run. All members may be called from any thread.
class QUORVELKIT_EXPORT URLSessionDataTask {
 public:
  /// A task is completed from just before its handler runs.
  enum class State { suspended, running, canceling, completed };

  URLSessionDataTask(const URLSessionDataTask&) = delete;
  URLSessionDataTask& operator=(const URLSessionDataTask&) = delete;
  virtual ~URLSessionDataTask();

  /// Starts the transfer. Does nothing the second time, after cancel() and after the end.
  virtual void resume() = 0;
  /// Ends the task with URLError::cancelled, also one that was never resumed. The handler of a task
  /// whose state is canceling always sees that error. Does nothing once the handler has begun.
  virtual void cancel() = 0;
  virtual State state() const = 0;
  virtual const URLRequest& originalRequest() const = 0;

 protected:
  URLSessionDataTask() = default;
};

}  // namespace quorvelkit
