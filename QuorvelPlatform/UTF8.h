// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstddef>
#include <string_view>

namespace quorvelkit {

/// Whether the bytes are UTF-8 (RFC 3629): no overlong forms, no surrogates, nothing above
/// U+10FFFF.
QUORVELKIT_EXPORT bool isUTF8(std::string_view bytes) noexcept;

/// The number of Unicode scalar values in a UTF-8 text.
QUORVELKIT_EXPORT std::size_t characterCount(std::string_view text) noexcept;

}  // namespace quorvelkit
