// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/FindQuery.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {
namespace {

/// Parses numbers that are separated by commas, such as "-76.59,39.28". Returns an empty list on
/// failure.
std::vector<double> numbers(std::string_view text) {
  std::vector<double> result;
  const char* at = text.data();
  const char* const end = at + text.size();
  while (true) {
    double number = 0;
    const auto [stop, error] = std::from_chars(at, end, number);
    if (error != std::errc() || !std::isfinite(number)) return {};
    result.push_back(number);
    if (stop == end) return result;
    if (*stop != ',') return {};
    at = stop + 1;
  }
}

bool isValid(const Coordinate& position) {
  return std::abs(position.latitude) <= 90 && std::abs(position.longitude) <= 180;
}

}  // namespace

std::optional<FindQuery> FindQuery::fromParameters(const QueryParameters& parameters,
                                                   const char* textParameter,
                                                   std::string& problem) {
  FindQuery query;
  const auto value = [&](const char* name) -> const std::string* {
    const auto found = parameters.find(name);
    return found == parameters.end() ? nullptr : &found->second;
  };
  const auto fail = [&](std::string sentence) {
    problem = std::move(sentence);
    return std::nullopt;
  };

  if (textParameter != nullptr) {
    const std::string* const text = value(textParameter);
    if (text == nullptr)
      return fail(std::string("The parameter ") + textParameter + " is missing.");
    query.text = *text;
  }

  const std::string* const location = value("location");
  if (location == nullptr) return fail("The parameter location is missing.");
  const auto position = numbers(*location);
  if (position.size() != 2) {
    return fail("The parameter location must be a longitude and a latitude, such as -76.59,39.28.");
  }
  query.location = {position[1], position[0]};
  if (!isValid(query.location)) {
    return fail(
        "The parameter location is out of range: longitude -180 to 180, latitude -90 to 90.");
  }

  if (const std::string* const text = value("searchExtent")) {
    const auto corners = numbers(*text);
    if (corners.size() != 4) {
      return fail("The parameter searchExtent must be west,south,east,north in degrees.");
    }
    query.extent = Extent{{corners[1], corners[0]}, {corners[3], corners[2]}};
    if (!isValid(query.extent->southwest) || !isValid(query.extent->northeast) ||
        corners[1] > corners[3]) {
      return fail(
          "The parameter searchExtent is out of range, or its south is larger than its north.");
    }
  }
  if (const std::string* const key = value("magicKey"); key != nullptr && !key->empty()) {
    query.magicKey = *key;
  }
  return query;
}

}  // namespace quorvelkit::sandbox
