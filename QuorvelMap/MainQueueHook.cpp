// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelPlatform/MainQueue.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace quorvelkit {

namespace {

class Receiver : public QObject {
 public:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) return QObject::event(event);
    MainQueue::main().runPending();
    return true;
  }

  void wakeUp() { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }
};

}  // namespace

void installMainQueueHook() {
  // Never destroyed: handlers may come in from other threads until the process has ended.
  static Receiver* receiver = nullptr;
  MainQueue& queue = MainQueue::main();
  if (!queue.hasWakeUpHook()) {
    if (receiver == nullptr) receiver = new Receiver;
    queue.setWakeUpHook([] { receiver->wakeUp(); });
  } else if (receiver != nullptr) {
    // An application object that ended took its posted events with it.
    receiver->wakeUp();
  }
}

}  // namespace quorvelkit
