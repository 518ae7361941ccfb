// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVSearchExtent.h>
#include <QuorvelPlatform/Coordinate.h>

#include <optional>
#include <string>
#include <string_view>

/// Parses "LAT,LON" in degrees: latitude -90 to 90, longitude -180 to 180.
std::optional<quorvelkit::Coordinate> parseCoordinate(std::string_view text);

/// Parses "S,W,N,E" in degrees. Returns nullopt if the south is greater than the north.
std::optional<quorvelkit::QVSearchExtent> parseExtent(std::string_view text);

/// Validators for CLI11. Return an error message, or an empty string if the argument is valid.
std::string checkCoordinate(const std::string& text);
std::string checkExtent(const std::string& text);
std::string checkTime(const std::string& text);
/// A search text must be UTF-8 and contain more than spaces.
std::string checkSearchText(const std::string& text);
/// A place is checked as a coordinate if it has no letter, or two parts that read as numbers or
/// degrees, such as "nan,1" and "39.3N,76.5W". Any other place is checked as a search text.
std::string checkPlace(const std::string& text);
/// The message does not repeat the URL, which may contain a password.
std::string checkBackendURL(const std::string& text);

/// Returns "LAT,LON" in degrees, as parseCoordinate() reads it.
std::string coordinateText(const quorvelkit::Coordinate& coordinate);
