// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Maneuver.h"

#include <vector>

namespace quorvelkit::sandbox {

/// Joins what the map splits into several turns and the driver feels as one: through a turning
/// lane that leaves the street before the junction, over the median of a divided street. Drops
/// names of streets that one is on for some meters only.
std::vector<Maneuver> mergeManeuvers(const RoadNetwork& network, const Path& path,
                                     const std::vector<Maneuver>& maneuvers);

}  // namespace quorvelkit::sandbox
