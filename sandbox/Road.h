// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"
#include "sandbox/RoadNumber.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvelkit::sandbox {

/// The classes of roads, the most important first.
enum class RoadClass : std::uint8_t {
  motorway,
  trunk,
  primary,
  secondary,
  tertiary,
  residential,
  service,
};

/// The properties of one way that routing uses. The texts point into the map data.
struct Road {
  std::int64_t id = 0;
  RoadClass roadClass = RoadClass::residential;
  /// A ramp or a turning lane between two roads.
  bool link = false;
  bool roundabout = false;
  bool openForward = true;
  bool openBackward = true;
  /// The average speed of a car, in meters per second.
  double speed = 0;
  std::string_view name;
  std::string_view ref;
  /// The destination on the signs of a ramp.
  std::string_view destination;
  std::optional<RoadNumber> number;

  /// Returns the road of a way, or nothing if cars cannot or must not drive there.
  static std::optional<Road> fromWay(const MapWay& way);

  /// True for motorways, trunk roads and their ramps.
  bool isHighway() const { return roadClass <= RoadClass::trunk; }
  /// The name, or else the text of the number; empty if the road has neither.
  std::string_view label() const { return name.empty() && number ? ref : name; }
  /// Whether both roads are parts of one street.
  bool isSameStreet(const Road& other) const;
};

}  // namespace quorvelkit::sandbox
