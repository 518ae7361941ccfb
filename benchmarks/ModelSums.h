// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlainModels.h"
#include "Sum.h"

#include <QuorvelKit/QVCandidate.h>
#include <QuorvelKit/QVRoute.h>
#include <QuorvelKit/QVSuggestion.h>

#include <vector>

namespace quorvelkit::bench {

/// Read every field once: of the library's models through their public properties, of plain structs
/// directly.
Sum sumOf(const QVRoute& route);
Sum sumOf(const std::vector<QVCandidate>& candidates);
Sum sumOf(const std::vector<QVSuggestion>& suggestions);
Sum sumOf(const PlainRoute& route);
Sum sumOf(const std::vector<PlainCandidate>& candidates);
Sum sumOf(const std::vector<PlainSuggestion>& suggestions);

}  // namespace quorvelkit::bench
