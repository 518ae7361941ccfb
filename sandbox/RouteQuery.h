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

/// What a route is asked for.
struct RouteQuery {
  Coordinate start;
  Coordinate end;
  /// When to leave or, if `arriveBy`, when to be there. Roads are equally fast at all times here.
  std::chrono::system_clock::time_point time;
  bool arriveBy = false;
  /// How fast the vehicle moves, and whereto: degrees clockwise from north.
  std::optional<double> speed;
  std::optional<double> course;

  /// Absent, with a sentence for the sender in `problem`, when a required parameter is missing or
  /// any is wrong.
  static std::optional<RouteQuery> fromParameters(const QueryParameters& parameters,
                                                  std::string& problem);
};

}  // namespace quorvelkit::sandbox
