// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/find/PlaceSearch.h"

#include <QuorvelKit/JSON/JSON.h>

#include <vector>

namespace quorvelkit::sandbox {

/// The answers of the find server. What a place does not have is left out, but an address has all
/// its texts, empty where they are unknown.
JSON candidatesDocument(const std::vector<PlaceSearch::Found>& found, const MapSource& source);
JSON suggestionsDocument(const std::vector<PlaceSearch::Found>& found, const MapSource& source);
JSON addressDocument(const Place& place);

}  // namespace quorvelkit::sandbox
