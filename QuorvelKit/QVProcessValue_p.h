// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <utility>

namespace quorvelkit {

/// The lock of all process-wide values: held for a copy or a swap, and across a fork, so that the
/// child finds every value whole. Never destroyed.
std::mutex& processValueMutex();

/// A value of the process that any thread may read and write. Make it with `new` behind a local
/// static reference: then it is there on first use and still there while the process exits.
template <class T>
class ProcessValue {
 public:
  ProcessValue() = default;
  explicit ProcessValue(T value) : value_(std::move(value)) {}

  T get() const {
    const std::lock_guard lock(processValueMutex());
    return value_;
  }
  /// Gives the old value, so that it is destroyed outside the lock: its destructor may come back
  /// here.
  T set(T value) {
    const std::lock_guard lock(processValueMutex());
    std::swap(value_, value);
    return value;
  }

 private:
  T value_{};
};

}  // namespace quorvelkit
