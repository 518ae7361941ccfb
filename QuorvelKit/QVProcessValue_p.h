// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <utility>

namespace quorvelkit {

/// Returns the mutex of all process-wide values. It is locked during fork(), so no value is half
/// written in the child process. Never destroyed.
std::mutex& processValueMutex();

/// A process-wide value, guarded by a mutex. Create it with `new` for a local static reference: it
/// is then created on first use and never destroyed.
template <class T>
class ProcessValue {
 public:
  ProcessValue() = default;
  explicit ProcessValue(T value) : value_(std::move(value)) {}

  T get() const {
    const std::lock_guard lock(processValueMutex());
    return value_;
  }
  /// Returns the old value. It is destroyed after the mutex is unlocked, because its destructor may
  /// use a process-wide value.
  T set(T value) {
    const std::lock_guard lock(processValueMutex());
    std::swap(value_, value);
    return value;
  }

 private:
  T value_{};
};

}  // namespace quorvelkit
