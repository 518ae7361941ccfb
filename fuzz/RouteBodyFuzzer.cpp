// SPDX-License-Identifier: Apache-2.0
#include "Fuzzing.h"

#include <QuorvelKit/QVRouteResponse.h>

using namespace quorvelkit;
using namespace quorvelkit::fuzz;

// Input: the body of a route response. All models of the route can be read, also after the response
// is destroyed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string body = textOf(bytes, size);
  std::optional<Error> error;
  const JSON json(Data(body), JSONReadingOptions::allowFragments, &error);
  const auto route = responseFor<QVRouteResponse>(body, 200)->route();
  require(responseFor<QVRouteResponse>(body, 404)->route().has_value() == route.has_value());
  if (!route) return 0;
  readAll(route->totalDistanceInMiles(), route->totalDurationInMinutes(), route->startNode(),
          route->endNode());
  require(route->points().size() == json["points"].arrayValue().size());
  for (std::size_t i = 0; i < route->points().size(); ++i) {
    const QVPoint& point = route->points()[i];
    const JSON source = json[{"points", i}];
    readAll(point.notify(), point.travelTimeInSeconds(), point.say(), point.edge(), point.node());
    require(point.distanceInMiles() == source["d"].double_());
    require(point.latitude() == source["lat"].double_());
    const bool isPlaced = point.latitude() && point.longitude();
    require(point.location().latitude == (isPlaced ? *point.latitude() : 0));
    require((point.turn() != nullptr) == (source["turn"].type() != JSON::Type::null));
    if (const QVTurn* turn = point.turn()) {
      readAll(turn->direction(), turn->instruction());
      if (const QVStreet* street = turn->street()) {
        readAll(street->name(), street->function(), street->connection(), street->direction());
        if (street->highway() != nullptr) {
          readAll(street->highway()->number(), street->highway()->direction());
        }
      }
    }
  }
  return 0;
}
