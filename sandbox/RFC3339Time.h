// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace quorvelkit::sandbox {

/// Parses a date-time (RFC 3339, section 5.6) such as "2017-03-01T14:05:00Z" or
/// "2017-03-01T14:05:00.5+01:00". Accepts a space instead of the "+", because the decoding of a
/// query can replace it.
std::optional<std::chrono::system_clock::time_point> parseRFC3339(std::string_view text);

}  // namespace quorvelkit::sandbox
