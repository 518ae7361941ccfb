// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/URLSessionConfiguration.h>

#include <pthread.h>

#include <memory>
#include <mutex>
#include <utility>

namespace quorvelkit {

namespace {

struct Default {
  std::mutex mutex;
  URLSessionConfiguration configuration;
};

Default& currentDefault() {
  static const NeverDestroyed<Default> instance;
  // fork() locks the mutex, so that the child process gets a consistent value.
  static const int registered =
      pthread_atfork([] { currentDefault().mutex.lock(); }, [] { currentDefault().mutex.unlock(); },
                     [] { currentDefault().mutex.unlock(); });
  static_cast<void>(registered);
  return *instance;
}

}  // namespace

URLSessionConfiguration URLSessionConfiguration::defaultConfiguration() {
  Default& current = currentDefault();
  const std::lock_guard lock(current.mutex);
  return current.configuration;
}

void URLSessionConfiguration::setDefault(URLSessionConfiguration configuration) {
  Default& current = currentDefault();
  const std::lock_guard lock(current.mutex);
  std::swap(current.configuration, configuration);
}

}  // namespace quorvelkit
