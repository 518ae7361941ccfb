// SPDX-License-Identifier: Apache-2.0
#include "sandbox/RouteService.h"

#include "sandbox/PathSearch.h"
#include "sandbox/RouteDocument.h"

namespace quorvelkit::sandbox {
namespace {

/// From this speed in meters per second, a car cannot turn back at once.
constexpr double minimumFastSpeed = 5;

std::string coordinateText(const Coordinate& c) {
  const JSON latitude(c.latitude);
  const JSON longitude(c.longitude);
  return latitude.stringValue() + "," + longitude.stringValue();
}

HTTPAnswer noRoadNear(const Coordinate& position) {
  return HTTPAnswer::failure(
      404, 404,
      "There is no road within a kilometer of " + coordinateText(position) + " on this map.");
}

}  // namespace

std::optional<HTTPAnswer> RouteService::answer(const HTTPRequest& request) const {
  if (request.path != "/v4/route") return std::nullopt;
  if (request.method != "GET") {
    return HTTPAnswer::failure(405, 405,
                               "This resource does not support the method " + request.method + ".");
  }
  std::string problem;
  const auto query = RouteQuery::fromParameters(request.parameters, problem);
  return query ? route(*query) : HTTPAnswer::failure(400, 400, problem);
}

HTTPAnswer RouteService::route(const RouteQuery& query) const {
  const auto starts = index_.near(query.start);
  if (starts.empty()) return noRoadNear(query.start);
  const auto ends = index_.near(query.end);
  if (ends.empty()) return noRoadNear(query.end);
  std::optional<Heading> heading;
  if (query.course) heading = {*query.course, query.speed.value_or(0) >= minimumFastSpeed};
  const auto path = fastestPath(network_, starts, ends, heading);
  if (!path) {
    return HTTPAnswer::failure(404, 404,
                               "No road leads from " + coordinateText(query.start) + " to " +
                                   coordinateText(query.end) + " on this map.");
  }
  return HTTPAnswer::json(routeDocument(network_, *path, query.end));
}

}  // namespace quorvelkit::sandbox
