// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlainModels.h"
#include "Sum.h"

#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <simdjson.h>

#include <string_view>
#include <vector>

namespace quorvelkit::bench {

// Other JSON libraries that read the same documents. All functions throw on failure.

/// simdjson's on-demand parser, straight into plain structs. `bytes` needs the padding of simdjson.
PlainRoute onDemandRoute(simdjson::ondemand::parser& parser, simdjson::padded_string_view bytes);
std::vector<PlainCandidate> onDemandCandidates(simdjson::ondemand::parser& parser,
                                               simdjson::padded_string_view bytes);
std::vector<PlainSuggestion> onDemandSuggestions(simdjson::ondemand::parser& parser,
                                                 simdjson::padded_string_view bytes);

/// nlohmann: a document, and a copied value for every point, as many model classes have it.
struct NlohmannRoute {
  explicit NlohmannRoute(std::string_view bytes);

  nlohmann::json document;
  std::vector<nlohmann::json> points;
};
Sum sumOf(const NlohmannRoute& route);

/// RapidJSON: a document without copied values.
struct RapidRoute {
  explicit RapidRoute(std::string_view bytes);

  rapidjson::Document document;
};
Sum sumOf(const RapidRoute& route);

/// Parse a document and read every field of every result.
Sum nlohmannCandidates(std::string_view bytes);
Sum nlohmannSuggestions(std::string_view bytes);
Sum rapidCandidates(std::string_view bytes);
Sum rapidSuggestions(std::string_view bytes);

}  // namespace quorvelkit::bench
