// SPDX-License-Identifier: Apache-2.0
#include "Peers.h"

namespace quorvelkit::bench {

namespace {

using simdjson::ondemand::object;
using simdjson::ondemand::raw_json_string;
using simdjson::ondemand::value;

void assign(std::string& to, value& from) { to = from.get_string().value(); }

void append(std::vector<std::string>& to, value& from) {
  for (auto element : from.get_array())
    to.emplace_back(element.get_string().value());
}

void read(object from, PlainHighway& highway) {
  for (auto member : from) {
    const raw_json_string key = member.key();
    value field = member.value();
    if (key == "number") {
      highway.number = field.get_int64();
    } else if (key == "dir") {
      highway.direction = enumValue<QVHighwayType>(field.get_string().value());
    }
  }
}

void read(object from, PlainStreet& street) {
  for (auto member : from) {
    const raw_json_string key = member.key();
    value field = member.value();
    if (key == "name") {
      assign(street.name, field);
    } else if (key == "dir") {
      const std::string_view direction = field.get_string();
      street.function = enumValue<QVStreetFunction>(direction);
      street.connection = enumValue<QVStreetConnection>(direction);
      street.direction = enumValue<QVStreetDirection>(direction);
    } else if (key == "hwy") {
      street.highway = std::make_unique<PlainHighway>();
      read(field.get_object(), *street.highway);
    }
  }
}

void read(object from, PlainTurn& turn) {
  for (auto member : from) {
    const raw_json_string key = member.key();
    value field = member.value();
    if (key == "dir") {
      turn.direction = enumValue<QVTurnDirection>(field.get_string().value());
    } else if (key == "instruct") {
      assign(turn.instruction, field);
    } else if (key == "st") {
      turn.street = std::make_unique<PlainStreet>();
      read(field.get_object(), *turn.street);
    }
  }
}

void read(object from, PlainPoint& point) {
  for (auto member : from) {
    const raw_json_string key = member.key();
    value field = member.value();
    if (key == "lat") {
      point.latitude = field.get_double();
    } else if (key == "lon") {
      point.longitude = field.get_double();
    } else if (key == "t") {
      point.travelTimeInSeconds = field.get_double();
    } else if (key == "d") {
      point.distanceInMiles = field.get_double();
    } else if (key == "edge") {
      point.edge = field.get_int64();
    } else if (key == "node") {
      point.node = field.get_int64();
    } else if (key == "turn") {
      point.turn = std::make_unique<PlainTurn>();
      read(field.get_object(), *point.turn);
    } else if (key == "notify") {
      assign(point.notify, field);
    } else if (key == "say") {
      append(point.say, field);
    }
  }
}

bool readResultField(raw_json_string key, value& field, PlainResult& result) {
  if (key == "origin") {
    result.origin = enumValue<QVOrigin>(field.get_string().value());
  } else if (key == "provide") {
    assign(result.provider, field);
  } else if (key == "score") {
    result.score = field.get_double();
  } else if (key == "rating") {
    result.rating = field.get_double();
  } else if (key == "reviewCount") {
    result.reviewCount = field.get_int64();
  } else if (key == "providerUrl") {
    assign(result.providerUrl, field);
  } else if (key == "phone") {
    assign(result.phone, field);
  } else if (key == "categories") {
    append(result.categories, field);
  } else {
    return false;
  }
  return true;
}

void read(object from, PlainCandidate& candidate) {
  for (auto member : from) {
    const raw_json_string key = member.key();
    value field = member.value();
    if (key == "Address") {
      assign(candidate.address, field);
    } else if (key == "location") {
      object location = field.get_object();
      candidate.location.longitude = location["x"].get_double();
      candidate.location.latitude = location["y"].get_double();
    } else if (key == "attributes") {
      for (auto pair : field.get_object()) {
        const raw_json_string name = pair.key();
        value attribute = pair.value();
        if (name == "Match_addr") assign(candidate.matchAddress, attribute);
        if (name == "magicKey") assign(candidate.placeAddress, attribute);
        if (name == "Addr_type") assign(candidate.addressType, attribute);
      }
    } else {
      readResultField(key, field, candidate);
    }
  }
}

void read(object from, PlainSuggestion& suggestion) {
  for (auto member : from) {
    const raw_json_string key = member.key();
    value field = member.value();
    if (key == "text") {
      assign(suggestion.text, field);
    } else if (key == "magicKey") {
      assign(suggestion.magicKey, field);
    } else if (key == "isCollection") {
      suggestion.isCollection = field.get_bool();
    } else if (!readResultField(key, field, suggestion)) {
      if (key == "price") suggestion.price = field.get_int64();
      if (key == "menuUrl") assign(suggestion.menuUrl, field);
      if (key == "url") assign(suggestion.url, field);
    }
  }
}

template <class Element>
void readArray(value& from, std::vector<Element>& elements) {
  for (auto element : from.get_array())
    read(element.get_object(), elements.emplace_back());
}

template <class Result>
std::vector<Result> readResults(simdjson::ondemand::parser& parser,
                                simdjson::padded_string_view bytes, std::string_view key) {
  std::vector<Result> results;
  simdjson::ondemand::document document = parser.iterate(bytes);
  value list = document[key];
  readArray(list, results);
  return results;
}

}  // namespace

PlainRoute onDemandRoute(simdjson::ondemand::parser& parser, simdjson::padded_string_view bytes) {
  PlainRoute route;
  simdjson::ondemand::document document = parser.iterate(bytes);
  for (auto member : document.get_object()) {
    const raw_json_string key = member.key();
    value field = member.value();
    if (key == "distance") {
      route.totalDistanceInMiles = field.get_double();
    } else if (key == "duration") {
      route.totalDurationInMinutes = field.get_double();
    } else if (key == "startNode") {
      route.startNode = field.get_int64();
    } else if (key == "endNode") {
      route.endNode = field.get_int64();
    } else if (key == "points") {
      readArray(field, route.points);
    }
  }
  return route;
}

std::vector<PlainCandidate> onDemandCandidates(simdjson::ondemand::parser& parser,
                                               simdjson::padded_string_view bytes) {
  return readResults<PlainCandidate>(parser, bytes, "candidates");
}
std::vector<PlainSuggestion> onDemandSuggestions(simdjson::ondemand::parser& parser,
                                                 simdjson::padded_string_view bytes) {
  return readResults<PlainSuggestion>(parser, bytes, "suggestions");
}

}  // namespace quorvelkit::bench
