// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Sum.h"

#include <QuorvelKit/QVHighway.h>
#include <QuorvelKit/QVStreet.h>
#include <QuorvelKit/QVTurn.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::bench {

/// The case of a text, as the models read it.
template <class E>
E caseOf(std::string_view text) {
  return fromRawValue<E>(text).value_or(E::unknown);
}

/// A route in plain structs: what somebody writes who needs no library.
struct PlainHighway {
  std::int64_t number = 0;
  QVHighwayType direction = QVHighwayType::unknown;
};
struct PlainStreet {
  std::string name;
  QVStreetFunction function = QVStreetFunction::unknown;
  QVStreetConnection connection = QVStreetConnection::unknown;
  QVStreetDirection direction = QVStreetDirection::unknown;
  std::unique_ptr<PlainHighway> highway;
};
struct PlainTurn {
  QVTurnDirection direction = QVTurnDirection::unknown;
  std::string instruction;
  std::unique_ptr<PlainStreet> street;
};
struct PlainPoint {
  double latitude = 0;
  double longitude = 0;
  double travelTimeInSeconds = 0;
  double distanceInMiles = 0;
  std::int64_t edge = 0;
  std::int64_t node = 0;
  std::unique_ptr<PlainTurn> turn;
  std::string notify;
  std::vector<std::string> say;
};
struct PlainRoute {
  double totalDistanceInMiles = 0;
  double totalDurationInMinutes = 0;
  std::int64_t startNode = 0;
  std::int64_t endNode = 0;
  std::vector<PlainPoint> points;
};

inline Sum sumOf(const PlainRoute& route) {
  Sum sum;
  sum.add(route.totalDistanceInMiles);
  sum.add(route.totalDurationInMinutes);
  sum.add(route.startNode);
  sum.add(route.endNode);
  for (const PlainPoint& point : route.points) {
    sum.add(point.latitude);
    sum.add(point.longitude);
    sum.add(point.travelTimeInSeconds);
    sum.add(point.distanceInMiles);
    sum.add(point.edge);
    sum.add(point.node);
    sum.add(point.notify);
    sum.add(point.say);
    const PlainTurn* const turn = point.turn.get();
    if (!turn) continue;
    sum.add(turn->direction);
    sum.add(turn->instruction);
    const PlainStreet* const street = turn->street.get();
    if (!street) continue;
    sum.add(street->name);
    sum.add(street->function);
    sum.add(street->connection);
    sum.add(street->direction);
    const PlainHighway* const highway = street->highway.get();
    if (!highway) continue;
    sum.add(highway->number);
    sum.add(highway->direction);
  }
  return sum;
}

}  // namespace quorvelkit::bench
