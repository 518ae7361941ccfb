// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVProcessValue_p.h>

#include <pthread.h>

namespace quorvelkit {

std::mutex& processValueMutex() {
  static std::mutex& mutex = []() -> std::mutex& {
    static auto* const made = new std::mutex;
    pthread_atfork([] { made->lock(); }, [] { made->unlock(); }, [] { made->unlock(); });
    return *made;
  }();
  return mutex;
}

}  // namespace quorvelkit
