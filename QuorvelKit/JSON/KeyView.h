// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quorvelkit {

/// The key of a member with its hash. Does not own the text. The hash of a constant is computed at
/// compile time, which makes the look-up faster.
///
/// Converts from texts, and from every type with a function `KeyView keyView(T)` in its namespace,
/// such as an enumeration of member names.
class KeyView {
 public:
  /// Refers to a text, which must exist as long as this object.
  template <class T>
  requires(std::convertible_to<const T&, std::string_view> &&
           !std::same_as<T, std::nullptr_t>) constexpr KeyView(const T& text) noexcept
      : text_(text), front_(frontOf(text_)), hash_(hashOf(text_)) {}

  /// Converts a type of an application by its function keyView().
  template <class T>
  requires(!std::convertible_to<const T&, std::string_view> && !std::same_as<T, KeyView> &&
           requires(const T& key) {
             { keyView(key) } -> std::convertible_to<KeyView>;
           }) constexpr KeyView(const T& key) noexcept
      : KeyView(keyView(key)) {}

  /// The text of the key.
  constexpr std::string_view text() const noexcept { return text_; }
  /// 24 bits, the same in every process.
  constexpr std::uint32_t hash() const noexcept { return hash_; }
  /// The first eight bytes of the text, padded with zeros.
  constexpr std::uint64_t front() const noexcept { return front_; }

  /// Compares the texts.
  friend constexpr bool operator==(const KeyView& a, const KeyView& b) noexcept {
    return a.front_ == b.front_ && a.text_ == b.text_;
  }

 private:
  // FNV-1a, folded to 24 bits by exclusive or, as its authors recommend.
  static constexpr std::uint32_t hashOf(std::string_view text) noexcept {
    std::uint32_t hash = 2166136261U;
    for (const char c : text)
      hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return (hash >> 24U) ^ (hash & 0xFFFFFFU);
  }

  static constexpr std::uint64_t frontOf(std::string_view text) noexcept {
    std::uint64_t front = 0;
    for (std::size_t i = 0; i < text.size() && i < sizeof front; ++i) {
      front |= std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * i);
    }
    return front;
  }

  std::string_view text_;
  std::uint64_t front_;
  std::uint32_t hash_;
};

}  // namespace quorvelkit
