// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstddef>
#include <string_view>

namespace quorvelkit {

/// Returns true if the bytes are UTF-8 (RFC 3629), without overlong forms, surrogates and values
/// above U+10FFFF.
QUORVELKIT_EXPORT bool isUTF8(std::string_view bytes) noexcept;

/// Returns the number of Unicode scalar values in a UTF-8 text.
QUORVELKIT_EXPORT std::size_t characterCount(std::string_view text) noexcept;

}  // namespace quorvelkit
