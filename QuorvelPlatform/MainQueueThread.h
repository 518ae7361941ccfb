// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

namespace quorvelkit {

/// A thread that runs MainQueue::main(), for programs without an event loop, such as servers,
/// plug-ins and command-line tools with threads of their own. Completion handlers then run on this
/// thread.
///
/// There can be one object at a time, and nothing else may run the main queue meanwhile: a second
/// object and a set wake-up hook are programming errors and stop the process. MainQueue::stop()
/// does not end the thread. A handler that throws ends the process, as on any thread.
///
/// The destructor waits for the block that is running and joins the thread. Blocks that have not
/// run stay in the queue. On its own thread the destructor returns at once, and the thread ends
/// after its block. If exit() is called while the object exists, the thread is stopped and joined
/// there; construct objects that handlers use before. A handler that waits for a call at that
/// moment never returns. A child process made by fork() has no such thread: there the destructor
/// does nothing, and a new object can be constructed.
class QUORVELKIT_EXPORT MainQueueThread {
 public:
  /// Starts the thread. Throws std::system_error if it cannot be started. When the constructor
  /// returns, MainQueue::isCurrentThread() is true on the new thread and on no other one.
  MainQueueThread();
  MainQueueThread(const MainQueueThread&) = delete;
  MainQueueThread& operator=(const MainQueueThread&) = delete;
  ~MainQueueThread();

 private:
  int process_;
};

}  // namespace quorvelkit
