// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace quorvelkit {

/// Parses a date of a header field (RFC 9110, section 5.6.7), such as "Sun, 06 Nov 1994 08:49:37
/// GMT". Does not depend on the locale.
std::optional<std::chrono::sys_seconds> parseHTTPDate(const std::string& text);

}  // namespace quorvelkit
