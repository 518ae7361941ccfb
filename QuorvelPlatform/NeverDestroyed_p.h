// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace quorvelkit {

/// Holds a value and never destroys it. For static variables that threads may use during exit.
template <class T>
class NeverDestroyed {
 public:
  template <class... Arguments>
  explicit NeverDestroyed(Arguments&&... arguments)
      : value_(std::construct_at(reinterpret_cast<T*>(storage_),
                                 std::forward<Arguments>(arguments)...)) {}
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;
  ~NeverDestroyed() = default;

  T& operator*() const noexcept { return *value_; }
  T* operator->() const noexcept { return value_; }

 private:
  alignas(T) std::byte storage_[sizeof(T)];
  T* value_;
};

}  // namespace quorvelkit
