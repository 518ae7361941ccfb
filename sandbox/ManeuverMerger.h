// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Maneuver.h"

#include <vector>

namespace quorvelkit::sandbox {

/// Merges turns that are separate in the map but one maneuver for the driver: through a turning
/// lane, or over the median of a divided street. Removes name changes that hold for some meters
/// only.
std::vector<Maneuver> mergeManeuvers(const RoadNetwork& network, const Path& path,
                                     const std::vector<Maneuver>& maneuvers);

}  // namespace quorvelkit::sandbox
