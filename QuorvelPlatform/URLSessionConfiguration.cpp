// SPDX-License-Identifier: Apache-2.0
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

// The lock is held across a fork, so that the child finds the value whole.
Default& currentDefault() {
  static Default* const instance = [] {
    pthread_atfork([] { currentDefault().mutex.lock(); }, [] { currentDefault().mutex.unlock(); },
                   [] { currentDefault().mutex.unlock(); });
    return new Default;
  }();
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
