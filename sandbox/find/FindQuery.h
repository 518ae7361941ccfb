// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RouteQuery.h"
#include "sandbox/find/PlaceSearch.h"

#include <QuorvelPlatform/Coordinate.h>

#include <optional>
#include <string>

namespace quorvelkit::sandbox {

/// The parameters of a find request. The wire format has the longitude first.
struct FindQuery {
  std::string text;
  Coordinate location;
  std::optional<Extent> extent;
  /// The key of the place to return. The text is ignored then.
  std::optional<std::string> magicKey;

  /// `textParameter` is the name of the parameter that has the text; null if the resource has none.
  /// Returns nothing and sets `problem` to an error text for the client if a required parameter is
  /// missing or a parameter is wrong.
  static std::optional<FindQuery> fromParameters(const QueryParameters& parameters,
                                                 const char* textParameter, std::string& problem);
};

}  // namespace quorvelkit::sandbox
