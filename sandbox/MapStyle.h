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
/// What tagged lines and areas are drawn as besides.
bool isPark(const Tags& tags);
bool isWater(const Tags& tags);

/// The style. `rootURL` is where its GeoJSON is, `attribution` the notice about it as HTML.
JSON mapStyle(const std::string& rootURL, const std::string& attribution);

}  // namespace quorvelkit::sandbox
