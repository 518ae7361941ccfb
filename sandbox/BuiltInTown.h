// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace quorvelkit::sandbox {

/// Returns the text of data/town.geojson, which is compiled into the program.
std::string builtInTownGeoJSON();

}  // namespace quorvelkit::sandbox
