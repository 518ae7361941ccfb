// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace quorvelkit {

/// Immutable bytes, shared by all copies: copying costs one reference count, never the bytes.
/// Safe to read from any threads at once.
class Data {
 public:
  /// No bytes.
  Data() noexcept = default;
  /// Takes the bytes over without copying them.
  explicit Data(std::string bytes)
      : bytes_(std::make_shared<const std::string>(std::move(bytes))) {}

  /// The bytes, with a 0 behind them that is none of them.
  const char* data() const noexcept { return bytes_ ? bytes_->c_str() : ""; }
  std::size_t size() const noexcept { return bytes_ ? bytes_->size() : 0; }
  bool empty() const noexcept { return size() == 0; }
  /// The bytes; valid as long as this value or a copy of it lives. Never null, also of no bytes.
  std::string_view view() const noexcept { return {data(), size()}; }

  friend bool operator==(const Data& a, const Data& b) noexcept { return a.view() == b.view(); }

 private:
  std::shared_ptr<const std::string> bytes_;
};

}  // namespace quorvelkit
