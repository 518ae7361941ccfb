// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelPlatform/Coordinate.h>

#include <optional>
#include <string>

/// The wire format of the find server.
namespace quorvelkit {

/// Returns the root URL of the find server, or nullopt if the cached configuration has none.
std::optional<std::string> findRootURL();

/// Returns a coordinate as "LONGITUDE,LATITUDE" in degrees, such as "-118.2437,34.0522".
std::string queryText(Coordinate coordinate);

/// Reads the member "location": longitude in "x", latitude in "y". A missing number is 0.
Coordinate readLocation(const JSON& json);

}  // namespace quorvelkit
