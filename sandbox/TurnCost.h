// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RoadNetwork.h"

namespace quorvelkit::sandbox {

/// The seconds that driving from one edge onto a following one takes, beyond the edges
/// themselves: slowing down and giving way, left turns across traffic, and turning back.
double turnSeconds(const RoadNetwork& network, RoadNetwork::EdgeIndex from,
                   RoadNetwork::EdgeIndex onto);

}  // namespace quorvelkit::sandbox
