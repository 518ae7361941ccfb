// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace quorvelkit {

/// The domain of every error that a JSON value carries or that its parser and writer report.
inline constexpr std::string_view ErrorDomain = "QuorvelKit.JSON";

/// The codes of that domain: an object of no JSON kind was assigned, ...
inline constexpr std::int64_t ErrorUnsupportedType = 999;
/// ... an index beyond an array's elements was read, ...
inline constexpr std::int64_t ErrorIndexOutOfBounds = 900;
/// ... an index of something else than an array or a key of something else than a map was read, ...
inline constexpr std::int64_t ErrorWrongType = 901;
/// ... a key was read that the map lacks, ...
inline constexpr std::int64_t ErrorNotExist = 500;
/// ... or bytes are no JSON document, or a value cannot be written as one.
inline constexpr std::int64_t ErrorInvalidJSON = 490;

}  // namespace quorvelkit
