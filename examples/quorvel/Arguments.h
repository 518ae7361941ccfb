// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// Reads "LAT,LON" in degrees: latitude -90 to 90, longitude -180 to 180.
std::optional<quorvelkit::Coordinate> parseCoordinate(std::string_view text);

/// Reads an RFC 3339 date-time in whole seconds, such as "2017-03-01T14:05:00Z".
std::optional<std::chrono::system_clock::time_point> parseTime(const std::string& text);
