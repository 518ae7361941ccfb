// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// The text with every byte percent-encoded (RFC 3986, section 2.1, upper-case digits) that may
/// not stand in the query of a URL. Letters, digits and !$&'()*+,-./:;=?@_~ stay, so "&" and "="
/// are not protected; "%" is encoded, so a text that was encoded before is encoded again. Absent
/// when the text is not UTF-8.
QUORVELKIT_EXPORT std::optional<std::string> percentEncodedForQuery(std::string_view text);

/// percentEncodedForQuery() of a text that must be UTF-8: any other text is a programming error
/// and stops the process.
QUORVELKIT_EXPORT std::string urlEncode(std::string_view text);

}  // namespace quorvelkit
