// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVSearchExtent.h>
#include <QuorvelPlatform/Coordinate.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// Reads "LAT,LON" in degrees: latitude -90 to 90, longitude -180 to 180.
std::optional<quorvelkit::Coordinate> parseCoordinate(std::string_view text);

/// Reads "S,W,N,E" in degrees, with the south not above the north.
std::optional<quorvelkit::QVSearchExtent> parseExtent(std::string_view text);

/// Reads an RFC 3339 date-time in whole seconds, such as "2017-03-01T14:05:00Z".
std::optional<std::chrono::system_clock::time_point> parseTime(const std::string& text);

/// What CLI11 calls on an argument: a sentence about what is wrong, empty when nothing is.
std::string checkCoordinate(const std::string& text);
std::string checkExtent(const std::string& text);
std::string checkTime(const std::string& text);
/// A text to search for must be UTF-8, and more than blanks.
std::string checkSearchText(const std::string& text);
/// A coordinate or, if there is a letter in it, a text to search for.
std::string checkPlace(const std::string& text);

/// "39.28,-76.59", as parseCoordinate() reads it.
std::string coordinateText(const quorvelkit::Coordinate& coordinate);
