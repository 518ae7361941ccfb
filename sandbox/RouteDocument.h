// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelPlatform/Coordinate.h>

namespace quorvelkit::sandbox {

/// The document that answers a route request: totals in miles and minutes, and the points with
/// their turns and what is said there. `destination` is where the driver wants to be, which may be
/// beside the road.
JSON routeDocument(const RoadNetwork& network, const Path& path, const Coordinate& destination);

}  // namespace quorvelkit::sandbox
