// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <variant>

using ArrivalTime = std::chrono::system_clock::time_point;

/// Parses a date-time (RFC 3339, section 5.6) such as "2017-03-01T14:05:00Z" or
/// "2017-03-01t14:05:00.5+01:00". Returns the reason for a text that is none. Second 60 is accepted
/// where a leap second is possible, and means the second after it. The years are 1678 to 2261,
/// because the clock of the system ends there.
std::variant<ArrivalTime, std::string> parseArrivalTime(std::string_view text);
