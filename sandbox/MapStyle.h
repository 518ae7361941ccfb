// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Tags.h"

#include <QuorvelKit/JSON/JSON.h>

#include <string>
#include <string_view>

namespace quorvelkit::sandbox {

/// Returns the class of a street in the style, from "motorway" to "path"; empty for other features.
std::string_view streetClass(const Tags& tags);
/// Returns the class of an area in the style: "town", "park", "wood" or "beach"; empty for others.
std::string_view landClass(const Tags& tags);
/// Whether the style draws a line or an area as water.
bool isWater(const Tags& tags);

/// Returns the style. `rootURL` is the URL of the server of its GeoJSON, `attribution` is HTML.
JSON mapStyle(const std::string& rootURL, const std::string& attribution);

}  // namespace quorvelkit::sandbox
