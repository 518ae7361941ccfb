// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlainRoute.h"
#include "Sum.h"

#include <QuorvelKit/QVOrigin.h>

#include <simdjson.h>

#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::bench {

/// What candidates and suggestions have in common, and the two, in plain structs.
struct PlainResult {
  double rating = 0;
  double score = 0;
  std::int64_t reviewCount = 0;
  QVOrigin origin = QVOrigin::unknown;
  std::string provider, providerUrl, phone;
  std::vector<std::string> categories;
};
struct PlainCandidate : PlainResult {
  double latitude = 0;
  double longitude = 0;
  std::string address, matchAddress, placeAddress, addressType;
};
struct PlainSuggestion : PlainResult {
  std::int64_t price = 0;
  bool isCollection = false;
  std::string text, magicKey, menuUrl, url;
};

using PlainCandidates = std::vector<PlainCandidate>;
using PlainSuggestions = std::vector<PlainSuggestion>;

Sum sumOf(const PlainCandidates& candidates);
Sum sumOf(const PlainSuggestions& suggestions);

/// simdjson's on-demand parser straight into the structs.
PlainCandidates onDemandCandidates(simdjson::ondemand::parser& parser,
                                   simdjson::padded_string_view bytes);
PlainSuggestions onDemandSuggestions(simdjson::ondemand::parser& parser,
                                     simdjson::padded_string_view bytes);

/// A document of the others, parsed and every field of every result read.
Sum nlohmannCandidates(std::string_view bytes);
Sum nlohmannSuggestions(std::string_view bytes);
Sum rapidCandidates(std::string_view bytes);
Sum rapidSuggestions(std::string_view bytes);

}  // namespace quorvelkit::bench
