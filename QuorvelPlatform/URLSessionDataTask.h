// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URLRequest.h>

#include <memory>

namespace quorvelkit {

/// One HTTP request with its completion handler. After resume() or cancel(), the handler runs
/// exactly once, on the session's callback thread (URLSession), never inside these calls. The
/// handler is destroyed after it ran. Thread-safe.
class QUORVELKIT_EXPORT URLSessionDataTask {
 public:
  /// A task becomes completed just before its handler runs.
  enum class State { suspended, running, canceling, completed };

  URLSessionDataTask(const URLSessionDataTask&) = delete;
  URLSessionDataTask& operator=(const URLSessionDataTask&) = delete;
  virtual ~URLSessionDataTask();

  /// Starts the task. Does nothing if the task was started or cancelled before. If this throws
  /// std::bad_alloc, the handler never runs.
  virtual void resume() = 0;
  /// Ends the task with URLError::cancelled, also if it was never resumed. In the state canceling,
  /// the handler always receives that error. Does nothing after the handler has begun.
  /// If this throws std::bad_alloc, a running task continues, and the handler of a suspended one
  /// never runs.
  virtual void cancel() = 0;
  /// The current state.
  virtual State state() const = 0;
  /// The request that made the task, without redirects.
  virtual const URLRequest& originalRequest() const = 0;

 protected:
  URLSessionDataTask() = default;
};

}  // namespace quorvelkit
