// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace quorvelkit::sandbox {

/// Reads a date-time of RFC 3339, section 5.6: "2017-03-01T14:05:00Z",
/// "2017-03-01T14:05:00.5+01:00". In a query a "+" may have become a blank, which is read as the
/// "+" it was.
std::optional<std::chrono::system_clock::time_point> parseRFC3339(std::string_view text);

}  // namespace quorvelkit::sandbox
