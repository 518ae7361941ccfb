// SPDX-License-Identifier: Apache-2.0
#include "Arguments.h"

#include <time.h>

#include <charconv>

using namespace quorvelkit;

namespace {

/// Reads the whole text as a number in a range around zero.
std::optional<double> parseDegrees(std::string_view text, double most) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || !(value >= -most && value <= most)) {
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

std::optional<std::chrono::system_clock::time_point> parseTime(const std::string& text) {
  tm fields{};
  const char* const rest = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S%z", &fields);
  if (rest == nullptr || *rest != '\0') return std::nullopt;
  const long offset = fields.tm_gmtoff;
  return std::chrono::system_clock::from_time_t(timegm(&fields) - offset);
}
