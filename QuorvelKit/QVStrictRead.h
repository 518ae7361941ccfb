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

/// A value as a T, by the one rule that all models share: absent unless it is of that kind.
///
///  - `double`: any JSON number.
///  - `std::int64_t`: a JSON number that is exactly such an integer (3 and 3.0, not 3.5 or 1e300).
///  - `bool`: true and false, never a number; and these never pass as numbers.
///  - `std::string`: a text, never a number.
///  - `std::vector<std::string>`: a list whose elements are all texts, also an empty one.
///  - `ValueMap`: a map.
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
    static_assert(std::same_as<T, ValueMap>, "a kind that no model reads");
    return Value(value).members();
  }
}

}  // namespace quorvelkit
