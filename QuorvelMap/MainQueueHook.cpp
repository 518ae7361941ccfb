// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelPlatform/MainQueue.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <memory>

namespace quorvelkit {

namespace {

// Runs the blocks of the main queue when Qt delivers its event.
class MainQueueRunner : public QObject {
 public:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) return QObject::event(event);
    MainQueue::main().runPending();
    return true;
  }

  // Qt's event queue owns the event.
  void wakeUp() {
    QCoreApplication::postEvent(this, std::make_unique<QEvent>(QEvent::User).release());
  }
};

}  // namespace

void installMainQueueHook() {
  // Never destroyed: other threads may call the hook until the process ends.
  static MainQueueRunner* runner = nullptr;
  MainQueue& queue = MainQueue::main();
  if (!queue.hasWakeUpHook()) {
    if (runner == nullptr) runner = std::make_unique<MainQueueRunner>().release();
    queue.setWakeUpHook([] { runner->wakeUp(); });
  } else if (runner != nullptr) {
    // The destructor of an earlier application object has deleted the posted events.
    runner->wakeUp();
  }
}

}  // namespace quorvelkit
