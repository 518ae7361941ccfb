// SPDX-License-Identifier: Apache-2.0
#include "Arguments.h"

#include "ArrivalTime.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelPlatform/DoubleText.h>
#include <QuorvelPlatform/UTF8.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <sstream>
#include <utility>

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

bool isCardinal(char c) { return std::string_view("nsew").find(c) != std::string_view::npos; }

bool isASCII(const std::string& text) {
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

/// Replaces signs of coordinates by ASCII characters: marks of degrees and separators by spaces.
std::string withPlainSigns(std::string text) {
  constexpr std::pair<std::string_view, char> signs[] = {
      {"\u2212", '-'}, {"\u00B0", ' '}, {"\u00BA", ' '}, {"\u2032", ' '},
      {"\u2033", ' '}, {"'", ' '},      {"\"", ' '},     {",", ' '},
      {";", ' '},      {"/", ' '},      {":", ' '},      {"+", ' '}};
  for (const auto& [sign, plain] : signs) {
    for (auto at = text.find(sign); at != text.npos; at = text.find(sign, at + 1))
      text.replace(at, sign.size(), 1, plain);
  }
  return text;
}

/// Returns true if the text has only numbers, at least two, with signs, marks of degrees, cardinal
/// directions and words such as "lat", and is no pair of house numbers: "39.3N 76.5W", "nan;1".
bool looksLikeCoordinate(const std::string& text) {
  constexpr std::string_view words[] = {"lat",  "latitude",  "lon", "lng",
                                        "long", "longitude", "geo"};
  std::istringstream tokens(withPlainSigns(text));
  bool isExact = text.find_first_of(".,;'\"-") != text.npos || !isASCII(text);
  int numbers = 0;
  for (std::string token; tokens >> token;) {
    std::transform(token.begin(), token.end(), token.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (std::find(std::begin(words), std::end(words), token) != std::end(words)) {
      isExact = true;
      continue;
    }
    if (token.size() == 1 && isCardinal(token.front())) continue;
    std::optional<double> number = parseNumber(token);
    if (!number && isCardinal(token.back()))
      number = parseNumber(token.substr(0, token.size() - 1));
    if (!number && isCardinal(token.front())) number = parseNumber(token.substr(1));
    if (!number) return false;
    isExact = isExact || !std::isfinite(*number);
    ++numbers;
  }
  return numbers >= 2 && isExact;
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
  const bool hasLetter = !isASCII(text) || std::any_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
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
