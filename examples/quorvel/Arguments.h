// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVSearchExtent.h>
#include <QuorvelPlatform/Coordinate.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// Parses "LAT,LON" in degrees: latitude -90 to 90, longitude -180 to 180.
std::optional<quorvelkit::Coordinate> parseCoordinate(std::string_view text);

/// Parses "S,W,N,E" in degrees. Returns nullopt if the south is greater than the north.
std::optional<quorvelkit::QVSearchExtent> parseExtent(std::string_view text);

/// Parses an RFC 3339 time in whole seconds, such as "2017-03-01T14:05:00Z".
std::optional<std::chrono::system_clock::time_point> parseTime(const std::string& text);

/// Validators for CLI11. Return an error message, or an empty string if the argument is valid.
std::string checkCoordinate(const std::string& text);
std::string checkExtent(const std::string& text);
std::string checkTime(const std::string& text);
/// A search text must be UTF-8 and contain more than spaces.
std::string checkSearchText(const std::string& text);
/// A place with a letter is checked as a search text, any other as a coordinate.
std::string checkPlace(const std::string& text);

/// Returns "LAT,LON" in degrees, as parseCoordinate() reads it.
std::string coordinateText(const quorvelkit::Coordinate& coordinate);
