// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/WakeUpHook.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>

#include <memory>

namespace quorvelkit {

/// Runs MainQueue::main() in the event loop of Qt. Needs Qt Core only (5.15 or 6); link
/// QuorvelKit::QtCore.
///
///  - Threads: construct and destroy it on the thread that runs the event loop, normally that of
///    the application object.
///  - Lifetime: it may be constructed before the application object and destroyed after it, and
///    destroyed inside a block and with blocks in the queue: they stay there. It does not keep
///    exec() running.
///  - Nested event loops (dialogs) inside a block run the blocks that follow.
///  - Exceptions: Qt's event loop does not support them. Blocks must not throw.
///  - Cost: one or two events for all blocks that are waiting.
///
/// QuorvelKit::Map has installMainQueueHook(), which uses this class.
class QtEventLoop {
 public:
  QtEventLoop() = default;
  QtEventLoop(const QtEventLoop&) = delete;
  QtEventLoop& operator=(const QtEventLoop&) = delete;

  /// Causes a call of runPending(). Only needed after a QCoreApplication was destroyed and another
  /// one constructed, because the destructor deletes the events of its thread. Thread-safe.
  void wakeUp() { runner_.wakeUp(); }

 private:
  // Runs the blocks when Qt delivers its event.
  class Runner : public QObject {
   public:
    void customEvent(QEvent* /*event*/) override {
      MainQueue::main().runPending();  // A block may destroy this object.
    }
    // Qt's event queue owns the event.
    void wakeUp() {
      QCoreApplication::postEvent(this, std::make_unique<QEvent>(QEvent::User).release());
    }
  };

  Runner runner_;
  WakeUpHook hook_{[this] { runner_.wakeUp(); }};
};

}  // namespace quorvelkit
