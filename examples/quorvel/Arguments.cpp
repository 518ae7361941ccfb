// SPDX-License-Identifier: Apache-2.0
#include "Arguments.h"

#include "ArrivalTime.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelPlatform/DoubleText.h>
#include <QuorvelPlatform/UTF8.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

using namespace quorvelkit;

namespace {

/// Parses the whole text as a number, which may be infinite or not a number.
std::optional<double> parseNumber(std::string_view text) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (stop != end) return std::nullopt;
  if (error == std::errc::result_out_of_range) return std::numeric_limits<double>::infinity();
  return error == std::errc() ? std::optional(value) : std::nullopt;
}

/// Splits a text at its first comma and the spaces after it.
std::optional<std::pair<std::string_view, std::string_view>> splitAtComma(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return std::nullopt;
  std::string_view second = text.substr(comma + 1);
  while (second.starts_with(' '))
    second.remove_prefix(1);
  return std::pair(text.substr(0, comma), second);
}

/// Returns what is wrong with a coordinate whose parts are numbers, else an empty text.
std::string coordinateFault(std::string_view text) {
  const auto parts = splitAtComma(text);
  const auto latitude = parts ? parseNumber(parts->first) : std::nullopt;
  const auto longitude = parts ? parseNumber(parts->second) : std::nullopt;
  if (!latitude || !longitude) return {};
  return std::abs(*latitude) <= 90 ? ": the longitude is not from -180 to 180"
                                   : ": the latitude is not from -90 to 90";
}

/// Returns true for numbers with degree marks or a cardinal direction: "39.3N", "W 76 32' 1\"".
bool looksLikeDegrees(std::string_view part) {
  std::string numbers;
  while (!part.empty()) {
    bool isMark = false;
    for (const std::string_view mark :
         {"\u00B0", "\u00BA", "\u2032", "\u2033", "'", "\"", "+", " "}) {
      if (!part.starts_with(mark)) continue;
      part.remove_prefix(mark.size());
      numbers += ' ';
      isMark = true;
    }
    if (isMark) continue;
    numbers += part.front();
    part.remove_prefix(1);
  }
  const auto isCardinal = [](char c) {
    return std::string_view("NSEWnsew").find(c) != std::string::npos;
  };
  if (parseNumber(numbers)) return true;  // Such as "nan", whose last letter is a cardinal.
  numbers.erase(numbers.find_last_not_of(' ') + 1);
  if (!numbers.empty() && isCardinal(numbers.back())) numbers.pop_back();
  numbers.erase(0, numbers.find_first_not_of(' '));
  if (!numbers.empty() && isCardinal(numbers.front())) numbers.erase(0, 1);
  bool hasNumber = false;
  for (std::size_t begin = 0; begin < numbers.size();) {
    const std::size_t end = std::min(numbers.find(' ', begin), numbers.size());
    if (end > begin) {
      if (!parseNumber(std::string_view(numbers).substr(begin, end - begin))) return false;
      hasNumber = true;
    }
    begin = end + 1;
  }
  return hasNumber;
}

bool looksLikeCoordinate(std::string_view text) {
  const auto parts = splitAtComma(text);
  return parts && looksLikeDegrees(parts->first) && looksLikeDegrees(parts->second);
}

}  // namespace

std::optional<Coordinate> parseCoordinate(std::string_view text) {
  const auto parts = splitAtComma(text);
  if (!parts) return std::nullopt;
  const auto latitude = parseNumber(parts->first);
  const auto longitude = parseNumber(parts->second);
  if (!latitude || !longitude) return std::nullopt;
  if (!(std::abs(*latitude) <= 90) || !(std::abs(*longitude) <= 180)) return std::nullopt;
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

std::string checkCoordinate(const std::string& text) {
  if (parseCoordinate(text)) return {};
  return "'" + text + "' is not LAT,LON in degrees, such as 39.3,-76.54" + coordinateFault(text);
}

std::string checkExtent(const std::string& text) {
  return parseExtent(text)
             ? std::string()
             : "'" + text + "' is not S,W,N,E in degrees, such as 39.2,-76.7,39.4,-76.5";
}

std::string checkTime(const std::string& text) {
  const auto time = parseArrivalTime(text);
  const auto* const reason = std::get_if<std::string>(&time);
  if (reason == nullptr) return {};
  return "'" + text + "' is not an RFC 3339 time, such as 2017-03-01T14:05:00Z: " + *reason;
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
  return hasLetter && !looksLikeCoordinate(text) ? checkSearchText(text) : checkCoordinate(text);
}

std::string checkBackendURL(const std::string& text) {
  std::string url = text;
  while (url.ends_with('/') && !url.ends_with("://"))
    url.pop_back();
  if (QVBackendless::isUsableBaseURL(url)) return {};
  return "the URL is not usable: it needs http or https, and a host, as in http://127.0.0.1:8080";
}

std::string coordinateText(const Coordinate& coordinate) {
  return defaultText(coordinate.latitude) + ',' + defaultText(coordinate.longitude);
}
