// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <utility>

namespace quorvelkit {

/// An independent JSON implementation, for comparison.
using Oracle = nlohmann::ordered_json;

inline JSON fromOracle(const Oracle& value) {
  if (value.is_object()) {
    ValueMap map;
    for (const auto& [key, member] : value.items())
      map.set(key, fromOracle(member));
    return Value(std::move(map));
  }
  if (value.is_array()) {
    ValueArray array;
    for (const Oracle& element : value)
      array.push_back(fromOracle(element));
    return Value(std::move(array));
  }
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_number_unsigned()) return value.get<std::uint64_t>();
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (value.is_number()) return value.get<double>();
  return JSON();
}

/// Parses a text with the oracle. Absent if it is not a document. The oracle stops at a NUL byte,
/// which is not allowed in a document.
inline std::optional<JSON> parsedByOracle(const std::string& text) {
  const Oracle oracle = Oracle::parse(text, nullptr, false);
  const bool accepted = !oracle.is_discarded() && text.find('\0') == std::string::npos;
  return accepted ? std::optional(fromOracle(oracle)) : std::nullopt;
}

}  // namespace quorvelkit
