// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Tags.h"

#include <QuorvelKit/JSON/JSON.h>

#include <string>
#include <string_view>

namespace quorvelkit::sandbox {

/// The class that a street is drawn with, from "motorway" down to "path"; empty for what is not
/// drawn.
std::string_view streetClass(const Tags& tags);
/// What an area is drawn as: "town", "park", "wood" or "beach"; empty for what is not drawn.
std::string_view landClass(const Tags& tags);
/// Whether a line or an area is drawn as water.
bool isWater(const Tags& tags);

/// The style. `rootURL` is where its GeoJSON is, `attribution` the notice about it as HTML.
JSON mapStyle(const std::string& rootURL, const std::string& attribution);

}  // namespace quorvelkit::sandbox
