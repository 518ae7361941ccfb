// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/find/PlaceSearch.h"

#include <QuorvelKit/JSON/JSON.h>

#include <vector>

namespace quorvelkit::sandbox {

/// The bodies of the find server. Members without a value are left out, except in an address: its
/// unknown texts are empty.
JSON candidatesDocument(const std::vector<PlaceSearch::Result>& found, const MapSource& source);
JSON suggestionsDocument(const std::vector<PlaceSearch::Result>& found, const MapSource& source);
JSON addressDocument(const Place& place);

}  // namespace quorvelkit::sandbox
