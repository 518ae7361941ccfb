// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// Percent-encodes each byte that is not allowed in the query of a URL (RFC 3986, section 2.1, with
/// upper-case digits). Keeps letters, digits and !$&'()*+,-./:;=?@_~, hence also "&" and "=".
/// Encodes "%", hence encodes an encoded text again. Absent if the text is not UTF-8.
QUORVELKIT_EXPORT std::optional<std::string> percentEncodedForQuery(std::string_view text);

/// Does the same for a text that must be UTF-8. Another text is a programming error and stops the
/// process.
QUORVELKIT_EXPORT std::string urlEncode(std::string_view text);

}  // namespace quorvelkit
