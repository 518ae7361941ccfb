// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/FatalError.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quorvelkit {

/// One case of an enumeration and the text it has on the wire.
template <class E>
struct RawValue {
  E value;
  std::string_view text;
};

/// The raw values of an enumeration, specialised beside it: all cases in the order in which they
/// are declared, which starts at 0 and leaves no gap.
template <class E>
inline constexpr std::array<RawValue<E>, 0> rawValues{};

/// Whether a table holds the cases of its enumeration in their order.
template <class E, std::size_t count>
constexpr bool isInDeclarationOrder(const std::array<RawValue<E>, count>& table) {
  for (std::size_t i = 0; i < count; ++i) {
    if (table[i].value != static_cast<E>(i)) return false;
  }
  return true;
}

/// An enumeration with string raw values.
template <class E>
concept RawRepresentable = !rawValues<E>.empty() && isInDeclarationOrder(rawValues<E>);

/// The text of a case. A value that is no case is a programming error and stops the process.
template <RawRepresentable E>
constexpr std::string_view rawValue(E value) {
  const auto& table = rawValues<E>;
  const auto index = static_cast<std::size_t>(value);
  if (index >= table.size()) fatalError("rawValue: the enumeration has no such case");
  return table[index].text;
}

/// The case whose text is exactly this one; absent when there is none. Case matters, nothing is
/// trimmed.
template <RawRepresentable E>
constexpr std::optional<E> fromRawValue(std::string_view text) {
  for (const auto& [value, itsText] : rawValues<E>) {
    if (itsText == text) return value;
  }
  return std::nullopt;
}

}  // namespace quorvelkit
