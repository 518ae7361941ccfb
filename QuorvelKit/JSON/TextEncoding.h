// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// How bytes stand for text. `utf16` and `utf32` obey a byte-order mark and are big-endian without
/// one (RFC 2781, section 4.3); the forms with a fixed order keep a mark as the character it is.
enum class TextEncoding {
  utf8,
  ascii,
  isoLatin1,
  utf16,
  utf16BigEndian,
  utf16LittleEndian,
  utf32,
  utf32BigEndian,
  utf32LittleEndian,
};

/// The text, as UTF-8, that bytes stand for; absent when they stand for none in this encoding.
QUORVELKIT_EXPORT std::optional<std::string> decodedText(std::string_view bytes,
                                                         TextEncoding encoding);

}  // namespace quorvelkit
