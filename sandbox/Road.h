// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"
#include "sandbox/RoadNumber.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvelkit::sandbox {

/// Roads by their weight in the network, the most important first.
enum class RoadClass : std::uint8_t {
  motorway,
  trunk,
  primary,
  secondary,
  tertiary,
  residential,
  service,
};

/// What a driver needs to know of one way. The texts point into the map data.
struct Road {
  std::int64_t id = 0;
  RoadClass roadClass = RoadClass::residential;
  /// A ramp or a turning lane between two roads.
  bool link = false;
  bool roundabout = false;
  bool openForward = true;
  bool openBackward = true;
  /// What a car drives here on average, all told, in meters per second.
  double speed = 0;
  std::string_view name;
  std::string_view ref;
  /// What the signs of a ramp announce.
  std::string_view destination;
  std::optional<RoadNumber> number;

  /// The road of a way; absent when cars cannot or must not drive there.
  static std::optional<Road> fromWay(const MapWay& way);

  /// Motorways and roads built like them, and their ramps.
  bool isHighway() const { return roadClass <= RoadClass::trunk; }
  /// What to call the road: its name, else the text of its number; empty when it has neither.
  std::string_view label() const { return name.empty() && number ? ref : name; }
  /// Whether a driver takes both for one street that goes on.
  bool isSameStreet(const Road& other) const;
};

}  // namespace quorvelkit::sandbox
