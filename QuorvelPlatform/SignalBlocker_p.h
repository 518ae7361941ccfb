// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <csignal>

namespace quorvelkit {

/// Blocks all signals in the current thread while this object exists. New threads inherit the mask:
/// the application's threads handle signals, and SIGPIPE of a broken connection is never delivered.
class SignalBlocker {
 public:
  SignalBlocker() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &previousMask_);
  }
  SignalBlocker(const SignalBlocker&) = delete;
  SignalBlocker& operator=(const SignalBlocker&) = delete;
  ~SignalBlocker() { pthread_sigmask(SIG_SETMASK, &previousMask_, nullptr); }

 private:
  sigset_t previousMask_{};
};

}  // namespace quorvelkit
