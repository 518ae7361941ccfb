// SPDX-License-Identifier: Apache-2.0
#include "DOMMembers.h"

#include <stdexcept>

namespace quorvelkit::bench {

void parseRapid(rapidjson::Document& document, std::string_view bytes) {
  document.Parse<rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag>(
      bytes.data(), bytes.size());
  if (document.HasParseError()) throw std::runtime_error("RapidJSON cannot parse the document");
}

}  // namespace quorvelkit::bench
