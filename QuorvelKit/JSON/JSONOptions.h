// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace quorvelkit {

/// How bytes are read. Without allowFragments a document must be an array or a map.
enum class JSONReadingOptions : unsigned { none = 0, allowFragments = 1 };

/// How a value is written, to be joined with "|". Without prettyPrinted there is no white space;
/// with it every element and member has a line, indented by two spaces a level. Members keep their
/// order unless sortedKeys asks for the bytewise order of their keys.
enum class JSONWritingOptions : unsigned { none = 0, prettyPrinted = 1, sortedKeys = 2 };

constexpr JSONWritingOptions operator|(JSONWritingOptions a, JSONWritingOptions b) noexcept {
  return static_cast<JSONWritingOptions>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(JSONWritingOptions options, JSONWritingOptions option) noexcept {
  return (static_cast<unsigned>(options) & static_cast<unsigned>(option)) != 0;
}

}  // namespace quorvelkit
