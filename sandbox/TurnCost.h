// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadNetwork.h"

namespace quorvelkit::sandbox {

/// Returns the seconds that a turn from one edge onto the next adds to the driving time of the
/// edges: slowing down, giving way, left turns across traffic, U-turns.
double turnSeconds(const RoadNetwork& network, RoadNetwork::EdgeIndex from,
                   RoadNetwork::EdgeIndex onto);

}  // namespace quorvelkit::sandbox
