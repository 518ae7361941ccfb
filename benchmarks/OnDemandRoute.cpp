// SPDX-License-Identifier: Apache-2.0
#include "RoutePeers.h"

namespace quorvelkit::bench {

namespace {

using simdjson::ondemand::array;
using simdjson::ondemand::object;
using simdjson::ondemand::value;

std::string text(value& from) { return std::string(from.get_string().value()); }

PlainHighway highwayOf(object from) {
  PlainHighway highway;
  for (auto member : from) {
    const simdjson::ondemand::raw_json_string key = member.key();
    value given = member.value();
    if (key == "number") {
      highway.number = given.get_int64();
    } else if (key == "dir") {
      highway.direction = caseOf<QVHighwayType>(given.get_string().value());
    }
  }
  return highway;
}

PlainStreet streetOf(object from) {
  PlainStreet street;
  for (auto member : from) {
    const simdjson::ondemand::raw_json_string key = member.key();
    value given = member.value();
    if (key == "name") {
      street.name = text(given);
    } else if (key == "dir") {
      const std::string_view direction = given.get_string();
      street.function = caseOf<QVStreetFunction>(direction);
      street.connection = caseOf<QVStreetConnection>(direction);
      street.direction = caseOf<QVStreetDirection>(direction);
    } else if (key == "hwy") {
      street.highway = std::make_unique<PlainHighway>(highwayOf(given.get_object()));
    }
  }
  return street;
}

PlainTurn turnOf(object from) {
  PlainTurn turn;
  for (auto member : from) {
    const simdjson::ondemand::raw_json_string key = member.key();
    value given = member.value();
    if (key == "dir") {
      turn.direction = caseOf<QVTurnDirection>(given.get_string().value());
    } else if (key == "instruct") {
      turn.instruction = text(given);
    } else if (key == "st") {
      turn.street = std::make_unique<PlainStreet>(streetOf(given.get_object()));
    }
  }
  return turn;
}

void read(object from, PlainPoint& point) {
  for (auto member : from) {
    const simdjson::ondemand::raw_json_string key = member.key();
    value given = member.value();
    if (key == "lat") {
      point.latitude = given.get_double();
    } else if (key == "lon") {
      point.longitude = given.get_double();
    } else if (key == "t") {
      point.travelTimeInSeconds = given.get_double();
    } else if (key == "d") {
      point.distanceInMiles = given.get_double();
    } else if (key == "edge") {
      point.edge = given.get_int64();
    } else if (key == "node") {
      point.node = given.get_int64();
    } else if (key == "turn") {
      point.turn = std::make_unique<PlainTurn>(turnOf(given.get_object()));
    } else if (key == "notify") {
      point.notify = text(given);
    } else if (key == "say") {
      for (auto sentence : given.get_array()) {
        value words = sentence.value();
        point.say.push_back(text(words));
      }
    }
  }
}

}  // namespace

PlainRoute onDemandRoute(simdjson::ondemand::parser& parser, simdjson::padded_string_view bytes) {
  PlainRoute route;
  simdjson::ondemand::document document = parser.iterate(bytes);
  for (auto member : document.get_object()) {
    const simdjson::ondemand::raw_json_string key = member.key();
    value given = member.value();
    if (key == "distance") {
      route.totalDistanceInMiles = given.get_double();
    } else if (key == "duration") {
      route.totalDurationInMinutes = given.get_double();
    } else if (key == "startNode") {
      route.startNode = given.get_int64();
    } else if (key == "endNode") {
      route.endNode = given.get_int64();
    } else if (key == "points") {
      for (auto point : given.get_array())
        read(point.get_object(), route.points.emplace_back());
    }
  }
  return route;
}

}  // namespace quorvelkit::bench
