// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelPlatform/MainQueue.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <memory>

namespace quorvelkit {

namespace {

class Receiver : public QObject {
 public:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) return QObject::event(event);
    MainQueue::main().runPending();
    return true;
  }

  // The queue of events owns what is posted.
  void wakeUp() {
    QCoreApplication::postEvent(this, std::make_unique<QEvent>(QEvent::User).release());
  }
};

}  // namespace

void installMainQueueHook() {
  // Never destroyed: handlers may come in from other threads until the process has ended.
  static Receiver* receiver = nullptr;
  MainQueue& queue = MainQueue::main();
  if (!queue.hasWakeUpHook()) {
    if (receiver == nullptr) receiver = std::make_unique<Receiver>().release();
    queue.setWakeUpHook([] { receiver->wakeUp(); });
  } else if (receiver != nullptr) {
    // An application object that ended took its posted events with it.
    receiver->wakeUp();
  }
}

}  // namespace quorvelkit
