// SPDX-License-Identifier: Apache-2.0
#include "Arguments.h"

#include <QuorvelPlatform/DoubleText.h>
#include <QuorvelPlatform/UTF8.h>

#include <time.h>

#include <algorithm>
#include <charconv>

using namespace quorvelkit;

namespace {

/// Parses the whole text as a number from -limit to limit.
std::optional<double> parseDegrees(std::string_view text, double limit) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || !(value >= -limit && value <= limit)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

std::optional<Coordinate> parseCoordinate(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return std::nullopt;
  std::string_view second = text.substr(comma + 1);
  while (second.starts_with(' '))
    second.remove_prefix(1);
  const auto latitude = parseDegrees(text.substr(0, comma), 90);
  const auto longitude = parseDegrees(second, 180);
  if (!latitude || !longitude) return std::nullopt;
  return Coordinate{*latitude, *longitude};
}

std::optional<QVSearchExtent> parseExtent(std::string_view text) {
  const std::size_t middle = text.find(',', std::min(text.find(','), text.size() - 1) + 1);
  if (middle == std::string_view::npos) return std::nullopt;
  const auto southwest = parseCoordinate(text.substr(0, middle));
  const auto northeast = parseCoordinate(text.substr(middle + 1));
  if (!southwest || !northeast || southwest->latitude > northeast->latitude) return std::nullopt;
  return QVSearchExtent{*southwest, *northeast};
}

std::optional<std::chrono::system_clock::time_point> parseTime(const std::string& text) {
  tm fields{};
  const char* const end = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S%z", &fields);
  if (end == nullptr || *end != '\0') return std::nullopt;
  const long offset = fields.tm_gmtoff;
  return std::chrono::system_clock::from_time_t(timegm(&fields) - offset);
}

std::string checkCoordinate(const std::string& text) {
  return parseCoordinate(text) ? std::string()
                               : "'" + text + "' is not LAT,LON in degrees, such as 39.3,-76.54";
}

std::string checkExtent(const std::string& text) {
  return parseExtent(text)
             ? std::string()
             : "'" + text + "' is not S,W,N,E in degrees, such as 39.2,-76.7,39.4,-76.5";
}

std::string checkTime(const std::string& text) {
  return parseTime(text) ? std::string()
                         : "'" + text + "' is not an RFC 3339 time, such as 2017-03-01T14:05:00Z";
}

std::string checkSearchText(const std::string& text) {
  if (!isUTF8(text)) return "the search text is not UTF-8";
  return text.find_first_not_of(' ') == std::string::npos ? "the search text is empty" : "";
}

std::string checkPlace(const std::string& text) {
  const bool hasLetter = std::any_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           static_cast<unsigned char>(c) >= 0x80;
  });
  return hasLetter ? checkSearchText(text) : checkCoordinate(text);
}

std::string coordinateText(const Coordinate& coordinate) {
  return defaultText(coordinate.latitude) + ',' + defaultText(coordinate.longitude);
}
