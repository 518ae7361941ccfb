// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/FatalError.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quorvelkit {

/// One case of an enumeration and its text in the wire format.
template <class E>
struct RawValue {
  /// A case, and its text in the wire format.
  E value;
  std::string_view text;
};

/// The raw values of an enumeration. Each enumeration specialises it with all cases in declaration
/// order. The cases must be numbered from 0 without gaps.
template <class E>
inline constexpr std::array<RawValue<E>, 0> rawValues{};

/// Returns true if a table contains the cases in declaration order.
template <class E, std::size_t count>
constexpr bool isInDeclarationOrder(const std::array<RawValue<E>, count>& table) {
  for (std::size_t i = 0; i < count; ++i) {
    if (table[i].value != static_cast<E>(i)) return false;
  }
  return true;
}

/// An enumeration with raw values.
template <class E>
concept RawRepresentable = !rawValues<E>.empty() && isInDeclarationOrder(rawValues<E>);

/// Returns the text of a case. Any other value is a programming error and stops the process.
template <RawRepresentable E>
constexpr std::string_view rawValue(E value) {
  const auto& table = rawValues<E>;
  const auto index = static_cast<std::size_t>(value);
  if (index >= table.size()) fatalError("rawValue: the enumeration has no such case");
  return table[index].text;
}

/// Returns the case with exactly this text, or nullopt. Case-sensitive; spaces are significant.
template <RawRepresentable E>
constexpr std::optional<E> fromRawValue(std::string_view text) {
  for (const auto& [value, caseText] : rawValues<E>) {
    if (caseText == text) return value;
  }
  return std::nullopt;
}

}  // namespace quorvelkit
