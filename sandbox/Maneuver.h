// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// An action of the driver at one node of a path.
struct Maneuver {
  enum class Type {
    depart,
    turn,
    /// Straight on, onto a street with another name.
    nameChange,
    /// From a highway onto a ramp.
    exit,
    /// From a street onto a ramp to a highway.
    ramp,
    /// From a ramp onto a highway.
    merge,
    fork,
    roundabout,
    uTurn,
    arrive,
  };

  Type type = Type::turn;
  /// The raw value of the direction, such as "slightleft".
  std::string_view direction = "forward";
  /// The index of the last edge before the maneuver, and of the first edge after it.
  std::size_t before = 0;
  std::size_t after = 0;
  /// In degrees; right is positive.
  double angle = 0;
  /// The number of the exit to take; 0 if the path ends in the roundabout.
  int roundaboutExit = 0;
};

/// Returns the direction of a turn by an angle in degrees, from "forward" to "uturnright".
std::string_view directionWord(double angle);

/// Returns the maneuvers of a path; the first is `depart`, the last is `arrive`. Bends, side
/// streets and crossings that the street passes straight produce no maneuver.
std::vector<Maneuver> findManeuvers(const RoadNetwork& network, const Path& path);

/// The length in meters of the consecutive links that contain edge `step`; 0 if it is no link.
double linkMeters(const RoadNetwork& network, const Path& path, std::size_t step);
/// A shorter link is a turning lane, also at a highway.
constexpr double minimumRampMeters = 60;

/// Whether the ramp at edge `step` of the path leads to a highway.
bool leadsToHighway(const RoadNetwork& network, const Path& path, std::size_t step);

}  // namespace quorvelkit::sandbox
