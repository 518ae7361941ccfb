// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

namespace quorvelkit {

/// Options of the parser. Without allowFragments, the document must be an array or a map.
enum class JSONReadingOptions : unsigned { none = 0, allowFragments = 1 };

/// Options of the writer; combine them with "|". prettyPrinted: each element and member on its own
/// line, with an indentation of two spaces per level; otherwise no white space. sortedKeys: members
/// in the bytewise order of their keys; otherwise in their own order.
enum class JSONWritingOptions : unsigned { none = 0, prettyPrinted = 1, sortedKeys = 2 };

constexpr JSONWritingOptions operator|(JSONWritingOptions a, JSONWritingOptions b) noexcept {
  return static_cast<JSONWritingOptions>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(JSONWritingOptions options, JSONWritingOptions option) noexcept {
  return (static_cast<unsigned>(options) & static_cast<unsigned>(option)) != 0;
}

}  // namespace quorvelkit
