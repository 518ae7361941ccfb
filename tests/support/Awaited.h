// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

namespace quorvelkit::test {

/// A value that one thread sets and another thread waits for. Copies share the value, so that one
/// copy may be destroyed while another one is set. Thread-safe.
template <class T>
class Awaited {
 public:
  void set(T value) const {
    {
      const std::lock_guard lock(shared_->mutex);
      shared_->value = std::move(value);
    }
    shared_->changed.notify_all();
  }
  /// Waits for the value. Throws after 30 seconds.
  T get() const {
    if (!waitFor(std::chrono::seconds(30)))
      throw std::runtime_error("The awaited value was not set.");
    const std::lock_guard lock(shared_->mutex);
    return *shared_->value;
  }
  /// Waits for the value. Returns false if it is not set within this time.
  bool waitFor(std::chrono::milliseconds time) const {
    std::unique_lock lock(shared_->mutex);
    return shared_->changed.wait_for(lock, time, [&] { return shared_->value.has_value(); });
  }

 private:
  struct Shared {
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<T> value;
  };
  const std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

}  // namespace quorvelkit::test
