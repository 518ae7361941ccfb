// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Sum.h"

#include <QuorvelKit/QVCandidate.h>
#include <QuorvelKit/QVRoute.h>
#include <QuorvelKit/QVSuggestion.h>

#include <vector>

namespace quorvelkit::bench {

/// Every field, once, through the public properties of the models.
Sum sumOf(const QVRoute& route);
Sum sumOf(const std::vector<QVCandidate>& candidates);
Sum sumOf(const std::vector<QVSuggestion>& suggestions);

}  // namespace quorvelkit::bench
