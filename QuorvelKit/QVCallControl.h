// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <memory>

namespace quorvelkit {

class QVBaseRequest;
class URLSessionDataTask;

namespace detail {

/// Connects a call of the pipeline with the QVCall that started it. The functions are called by the
/// pipeline. Thread-safe.
class QUORVELKIT_EXPORT CallControl {
 public:
  /// Makes a control the current one of this thread.
  class QUORVELKIT_EXPORT Scope {
   public:
    explicit Scope(std::shared_ptr<CallControl> control);
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope();

   private:
    std::shared_ptr<CallControl> previous_;
  };
  /// Returns the current control of this thread, or null, and makes none the current one: a control
  /// belongs to the first call that starts in its scope.
  static std::shared_ptr<CallControl> takeCurrent();

  CallControl() = default;
  CallControl(const CallControl&) = delete;
  CallControl& operator=(const CallControl&) = delete;
  virtual ~CallControl();

  virtual void didStart(std::shared_ptr<QVBaseRequest> request) = 0;
  /// Called before the task is resumed, and with null if the task cannot be started.
  virtual void didMakeTask(std::shared_ptr<URLSessionDataTask> task) = 0;
  /// Returns true if the call must not be sent any more.
  virtual bool isInterrupted() const = 0;
};

}  // namespace detail
}  // namespace quorvelkit
