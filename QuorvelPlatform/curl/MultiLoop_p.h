// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/curl/HostLines_p.h>
#include <QuorvelPlatform/curl/OpenSockets_p.h>

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

  HostLines& hosts() { return hosts_; }
  OpenSockets& sockets() { return sockets_; }
  void add(Transfer& transfer);
  void remove(Transfer& transfer);
  /// Moves bytes as far as they go and ends the transfers that are through.
  void perform();
  /// Waits, unless there is more to perform, until a socket, a timer of a transfer or wakeUp() asks
  /// for perform(), at most as long as given. False when none did.
  bool wait(std::chrono::nanoseconds longest);
  /// Ends the present or the next wait(). Any thread.
  void wakeUp();

  /// Held while the network library is at work, but for waiting: a process that is forked meanwhile
  /// would find the locks inside of it held for ever. The IO thread alone takes others inside it,
  /// and never runs anything of the application's there.
  std::recursive_mutex& atWork() { return atWork_; }

 private:
  void* const multi_;
  std::recursive_mutex atWork_;
  const int bell_;  // Cheaper than curl_multi_wakeup(), which sends over a pair of sockets.
  HostLines hosts_;
  OpenSockets sockets_;
  bool isIdle_ = false;  // Nothing can move before a socket or a timer says so.
};

}  // namespace quorvelkit
