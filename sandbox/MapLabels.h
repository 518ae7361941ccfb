// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"

#include <QuorvelKit/JSON/JSON.h>

namespace quorvelkit::sandbox {

/// Returns what the map style writes on the map, as GeoJSON features. Parts of a street with the
/// same name are one line. The properties are:
///
///  - for the name of a street: "class" as in streetClass(), "name"
///  - for a road number: "class" = "shield", "ref", "shield" (the name of an icon of the sprite),
///    "ink" ("light" or "dark", which can be read on the icon)
///  - for a settlement, an area of land or of water: "class" ("city", "town", "village", "suburb",
///    "park", "water"), "name"
ValueArray mapLabels(const MapData& map);

}  // namespace quorvelkit::sandbox
