// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelPlatform/Coordinate.h>

namespace quorvelkit::sandbox {

/// Returns the body of the response to a route request: the totals in miles and minutes, and the
/// points with their turns and spoken texts. `destination` may be off the road.
JSON routeDocument(const RoadNetwork& network, const Path& path, const Coordinate& destination);

}  // namespace quorvelkit::sandbox
