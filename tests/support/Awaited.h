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

/// A value that one thread sets and another waits for. Copies share it, so that it may be set
/// while the one who waits goes away.
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
  /// The value; throws when none comes in half a minute.
  T get() const {
    if (!waitFor(std::chrono::seconds(30))) throw std::runtime_error("Waited in vain.");
    const std::lock_guard lock(shared_->mutex);
    return *shared_->value;
  }
  /// Whether there is a value, now or within so much time.
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
