// SPDX-License-Identifier: Apache-2.0
#include <tests/support/JSONOracle.h>

#include <algorithm>
#include <cstdlib>

using namespace quorvelkit;

// Input: any bytes. The parser must agree with another parser, and must parse its own output.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(bytes), size);
  // The other parser has no limit for the depth.
  if (std::count(text.begin(), text.end(), '[') + std::count(text.begin(), text.end(), '{') > 512) {
    static_cast<void>(JSON::parse(text).description());
    return 0;
  }
  std::optional<Error> error;
  const JSON json(Data(text), JSONReadingOptions::allowFragments, &error);
  const std::optional<JSON> oracle = parsedByOracle(text);
  if (error.has_value() == oracle.has_value() || (oracle && json != *oracle)) std::abort();
  if (const std::optional<Data> written = json.rawData(JSONWritingOptions::prettyPrinted)) {
    if (JSON(*written) != json) std::abort();
  }
  return 0;
}
