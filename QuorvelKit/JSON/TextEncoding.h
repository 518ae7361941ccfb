// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// A text encoding. `utf16` and `utf32` read the byte order from a byte-order mark and are
/// big-endian without one (RFC 2781, section 4.3). The encodings with a fixed byte order decode a
/// byte-order mark as a character.
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

/// Decodes bytes and returns the text as UTF-8; absent if the bytes are not valid in the encoding.
QUORVELKIT_EXPORT std::optional<std::string> decodedText(std::string_view bytes,
                                                         TextEncoding encoding);

}  // namespace quorvelkit
