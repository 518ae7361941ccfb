// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RouteQuery.h"
#include "sandbox/find/PlaceSearch.h"

#include <QuorvelPlatform/Coordinate.h>

#include <optional>
#include <string>

namespace quorvelkit::sandbox {

/// What a search is asked for. Coordinates are longitude first on the wire.
struct FindQuery {
  std::string text;
  Coordinate location;
  std::optional<Extent> extent;
  /// Of the one place to find, whatever the text.
  std::optional<std::string> magicKey;

  /// Reads the parameters; the text is under a name that depends on the resource, and not read at
  /// all without one. Absent, with a sentence for the sender in `problem`, when a required
  /// parameter is missing or any is wrong.
  static std::optional<FindQuery> fromParameters(const QueryParameters& parameters,
                                                 const char* textName, std::string& problem);
};

}  // namespace quorvelkit::sandbox
