// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelPlatform/Coordinate.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// The root of the find server; absent while no configuration that names one is cached.
std::optional<std::string> findRootURL();

/// A coordinate as the find server takes it, longitude first: "-118.2437,34.0522".
std::string queryText(Coordinate coordinate);

/// The position under "location" as the find server sends it: longitude in "x", latitude in "y",
/// each 0 when it is missing.
Coordinate locationIn(const JSON& json);

}  // namespace quorvelkit
