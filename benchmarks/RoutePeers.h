// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlainRoute.h"

#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <simdjson.h>

#include <string_view>
#include <vector>

namespace quorvelkit::bench {

/// simdjson's on-demand parser straight into plain structs. The bytes have room behind them for
/// the parser to read beyond their end; a failure throws.
PlainRoute onDemandRoute(simdjson::ondemand::parser& parser, simdjson::padded_string_view bytes);

/// nlohmann: the document, and as in many a model class a value kept for every point.
struct NlohmannRoute {
  explicit NlohmannRoute(std::string_view bytes);

  nlohmann::json document;
  std::vector<nlohmann::json> points;
};
Sum sumOf(const NlohmannRoute& route);

/// RapidJSON: its document, read in place.
struct RapidRoute {
  explicit RapidRoute(std::string_view bytes);

  rapidjson::Document document;
};
Sum sumOf(const RapidRoute& route);

}  // namespace quorvelkit::bench
