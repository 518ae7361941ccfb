// SPDX-License-Identifier: Apache-2.0
#include "sandbox/GeoJSONWriter.h"

#include <utility>

namespace quorvelkit::sandbox {

Value position(const Coordinate& coordinate) {
  return JSON::makeArray({coordinate.longitude, coordinate.latitude});
}

Value positions(const std::vector<Coordinate>& line) {
  ValueArray list;
  list.reserve(line.size());
  for (const Coordinate& coordinate : line)
    list.push_back(position(coordinate));
  return Value(std::move(list));
}

void addFeature(ValueArray& features, std::string_view type, Value coordinates,
                ValueMap properties) {
  features.push_back(JSON::makeDictionary(
      {{"type", "Feature"},
       {"properties", Value(std::move(properties))},
       {"geometry",
        JSON::makeDictionary({{"type", type}, {"coordinates", std::move(coordinates)}})}}));
}

JSON featureCollection(ValueArray features) {
  return JSON::makeDictionary(
      {{"type", "FeatureCollection"}, {"features", Value(std::move(features))}});
}

}  // namespace quorvelkit::sandbox
