// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// One thing that the driver of a path has to do or to know.
struct Maneuver {
  enum class Manner {
    depart,
    turn,
    /// Straight on where the street has another name from here.
    proceed,
    /// Off a highway.
    exit,
    /// Toward a highway.
    ramp,
    /// From a ramp onto a highway.
    merge,
    fork,
    roundabout,
    turnBack,
    arrive,
  };

  Manner manner = Manner::turn;
  /// The direction as route documents write it, such as "slightleft".
  std::string_view direction = "forward";
  /// The last edge of the path before it and the first one after it.
  std::size_t before = 0;
  std::size_t after = 0;
  /// In degrees, right is positive.
  double angle = 0;
  /// Which exit of the roundabout to take; 0 when the path ends in it.
  int roundaboutExit = 0;
};

/// The word for a turn by so many degrees, from "forward" to "hardright" and "uturnright".
std::string_view directionWord(double angle);

/// What the driver of a path has to do, first departing and last arriving. Tells nothing where the
/// way is plain: where the street only bends, passes side streets or goes on beyond a crossing.
std::vector<Maneuver> findManeuvers(const RoadNetwork& network, const Path& path);

/// Whether the ramp that step `step` of the path is on leads to a highway.
bool leadsToHighway(const RoadNetwork& network, const Path& path, std::size_t step);

}  // namespace quorvelkit::sandbox
