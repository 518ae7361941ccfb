// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/curl/HostConnectionLimiter_p.h>
#include <QuorvelPlatform/curl/SocketTable_p.h>

#include <chrono>
#include <mutex>

namespace quorvelkit {

class Transfer;

/// Runs all transfers of the process on one libcurl multi handle. Never destroyed. All members
/// except wakeUp() and libcurlMutex() are used on the IO thread.
class TransferLoop {
 public:
  TransferLoop();
  TransferLoop(const TransferLoop&) = delete;
  TransferLoop& operator=(const TransferLoop&) = delete;

  HostConnectionLimiter& connectionLimiter() { return connectionLimiter_; }
  SocketTable& sockets() { return sockets_; }
  /// Starts a transfer. Throws std::bad_alloc if there is not enough memory.
  void add(Transfer& transfer);
  void remove(Transfer& transfer);
  /// Sends and receives without waiting, and calls didEnd() for the transfers that ended.
  void perform();
  /// Waits for a socket, a timer of a transfer or wakeUp(), at most for this time. Does not wait if
  /// perform() is necessary already. Returns true in that case, if a socket is ready, and after
  /// wakeUp().
  bool wait(std::chrono::nanoseconds limit);
  /// Ends the current or the next wait(). Thread-safe.
  void wakeUp();

  /// Locked while libcurl works on transfers or creates handles, except in wait(). fork() waits for
  /// it: a child process would otherwise inherit internal mutexes of libcurl in the locked state.
  /// The IO thread may lock other mutexes while it holds this one. It runs no application code
  /// then.
  std::recursive_mutex& libcurlMutex() { return libcurlMutex_; }

 private:
  void* const multi_;
  std::recursive_mutex libcurlMutex_;
  const int wakeUpDescriptor_;  // Faster than curl_multi_wakeup(), which uses a pair of sockets.
  HostConnectionLimiter connectionLimiter_;
  SocketTable sockets_;
  bool isIdle_ = false;  // perform() has nothing to do until a socket or a timer is ready.
};

}  // namespace quorvelkit
