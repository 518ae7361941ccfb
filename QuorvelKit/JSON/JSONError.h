// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <string_view>

namespace quorvelkit {

/// The domain of all errors of JSON values, of the parser and of the writer. The codes below are
/// the codes of this domain.
inline constexpr std::string_view ErrorDomain = "QuorvelKit.JSON";

/// An unsupported value was assigned.
inline constexpr std::int64_t ErrorUnsupportedType = 999;
/// An index was read that is out of the range of the array.
inline constexpr std::int64_t ErrorIndexOutOfBounds = 900;
/// An index was read from a value that is not an array, or a key from a value that is not a map.
inline constexpr std::int64_t ErrorWrongType = 901;
/// A key was read that the map does not have.
inline constexpr std::int64_t ErrorNotExist = 500;
/// The input of the parser is not a JSON text, or a value cannot be written as one.
inline constexpr std::int64_t ErrorInvalidJSON = 490;

}  // namespace quorvelkit
