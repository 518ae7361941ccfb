// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <mutex>

namespace quorvelkit {

class Transfer;

/// The transfers under way. Made once and never destroyed; all members but wakeUp() belong to the
/// IO thread.
class MultiLoop {
 public:
  MultiLoop();
  MultiLoop(const MultiLoop&) = delete;
  MultiLoop& operator=(const MultiLoop&) = delete;

  void add(Transfer& transfer);
  void remove(Transfer& transfer);
  /// Moves bytes as far as they go and ends the transfers that are through.
  void perform();
  /// Waits until a socket, a timer of a transfer or wakeUp() asks for perform(), at most as long
  /// as given.
  void wait(std::chrono::nanoseconds longest);
  /// Ends the present or the next wait(). Any thread.
  void wakeUp();

  /// Held while the network library is at work, but for waiting: a process that is forked meanwhile
  /// would find the locks inside of it held for ever. The IO thread alone takes others inside it.
  std::recursive_mutex& atWork() { return atWork_; }

 private:
  void* const multi_;
  std::recursive_mutex atWork_;
  bool someEnded_ = false;  // Since the last wait().
};

}  // namespace quorvelkit
