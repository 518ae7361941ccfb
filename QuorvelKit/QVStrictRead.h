// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Value.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit {

/// Returns a value as a T, or nullopt if it has another type. All models read their members with
/// it.
///
///  - `double`: every number.
///  - `std::int64_t`: a number that is exactly representable (3 and 3.0, not 3.5 or 1e300).
///  - `bool`: true and false. Booleans and numbers are not converted to each other.
///  - `std::string`: a string.
///  - `std::vector<std::string>`: an array of strings; it may be empty.
///  - `ValueMap`: an object.
template <class T>
std::optional<T> strictRead(const ValueView& value) {
  if constexpr (std::same_as<T, double>) {
    return value.number();
  } else if constexpr (std::same_as<T, std::int64_t>) {
    return value.exactInt64();
  } else if constexpr (std::same_as<T, bool>) {
    return value.boolean();
  } else if constexpr (std::same_as<T, std::string>) {
    const auto text = value.text();
    return text ? std::optional<T>(*text) : std::nullopt;
  } else if constexpr (std::same_as<T, std::vector<std::string>>) {
    if (value.kind() != ValueView::Kind::array) return std::nullopt;
    std::vector<std::string> texts;
    texts.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
      const auto text = value.element(i).text();
      if (!text) return std::nullopt;
      texts.emplace_back(*text);
    }
    return texts;
  } else {
    static_assert(std::same_as<T, ValueMap>, "no model reads this type");
    return Value(value).members();
  }
}

}  // namespace quorvelkit
