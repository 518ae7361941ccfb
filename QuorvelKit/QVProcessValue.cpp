// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVProcessValue_p.h>

#include <pthread.h>

namespace quorvelkit {

std::mutex& processValueMutex() {
  static auto& mutex = *new std::mutex;
  [[maybe_unused]] static const int isLockedDuringFork =
      pthread_atfork([] { mutex.lock(); }, [] { mutex.unlock(); }, [] { mutex.unlock(); });
  return mutex;
}

}  // namespace quorvelkit
