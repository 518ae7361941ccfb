// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace quorvelkit::sandbox {

/// The decoded parameters of a query string.
using QueryParameters = std::multimap<std::string, std::string>;

/// The parameters of a route request.
struct RouteQuery {
  Coordinate start;
  Coordinate end;
  /// The time of departure, or of arrival if `arriveBy`. Has no influence on the route.
  std::chrono::system_clock::time_point time;
  bool arriveBy = false;
  /// In meters per second.
  std::optional<double> speed;
  /// In degrees, clockwise from north.
  std::optional<double> course;

  /// Returns nothing and sets `problem` to an error text for the client if a required parameter is
  /// missing or a parameter is wrong.
  static std::optional<RouteQuery> fromParameters(const QueryParameters& parameters,
                                                  std::string& problem);
};

}  // namespace quorvelkit::sandbox
