// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace quorvelkit::sandbox {

/// The file data/town.geojson as it was when the program was built.
std::string builtInTownGeoJSON();

}  // namespace quorvelkit::sandbox
