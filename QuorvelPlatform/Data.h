// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace quorvelkit {

/// An immutable byte sequence. Copies share the bytes: a copy costs one atomic increment.
/// Concurrent reads are safe.
class Data {
 public:
  /// No bytes.
  Data() noexcept = default;
  /// Moves the bytes, without a copy.
  explicit Data(std::string bytes)
      : bytes_(std::make_shared<const std::string>(std::move(bytes))) {}
  /// Shares the bytes of a string, which must not change any more. Null means no bytes.
  explicit Data(std::shared_ptr<const std::string> bytes) noexcept : bytes_(std::move(bytes)) {}

  /// Returns a pointer to the bytes, never null. A zero byte follows the last byte.
  const char* data() const noexcept { return bytes_ ? bytes_->c_str() : ""; }
  /// The number of bytes.
  std::size_t size() const noexcept { return bytes_ ? bytes_->size() : 0; }
  /// Returns true if there are no bytes.
  bool empty() const noexcept { return size() == 0; }
  /// Returns a view of the bytes. Valid while this value or a copy of it exists. Its pointer is
  /// never null.
  std::string_view view() const noexcept { return {data(), size()}; }

  /// Compares the bytes.
  friend bool operator==(const Data& a, const Data& b) noexcept { return a.view() == b.view(); }

 private:
  std::shared_ptr<const std::string> bytes_;
};

}  // namespace quorvelkit
