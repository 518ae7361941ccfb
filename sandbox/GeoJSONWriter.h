// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelPlatform/Coordinate.h>

#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

Value position(const Coordinate& coordinate);
Value positions(const std::vector<Coordinate>& line);

/// Adds a GeoJSON feature. `type` is the type of its geometry.
void addFeature(ValueArray& features, std::string_view type, Value coordinates,
                ValueMap properties);

JSON featureCollection(ValueArray features);

}  // namespace quorvelkit::sandbox
