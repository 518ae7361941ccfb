// SPDX-License-Identifier: Apache-2.0
#include "Fuzzing.h"

#include <QuorvelPlatform/PercentEncoding.h>
#include <QuorvelPlatform/URL.h>

#include <tests/support/JSONOracle.h>

using namespace quorvelkit;
using namespace quorvelkit::fuzz;

namespace {

std::string decoded(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isEscape = text[i] == '%';
    bytes += isEscape
                 ? static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16))
                 : text[i];
    if (isEscape) i += 2;
  }
  return bytes;
}

// Whether another JSON library accepts the text as UTF-8.
bool isText(const std::string& bytes) {
  const std::string written = Oracle(bytes).dump(-1, ' ', false, Oracle::error_handler_t::ignore);
  return Oracle::parse(written) == bytes;
}

}  // namespace

// Input: a text. Encoded as a query value it decodes to the text. If it is UTF-8, the text encoded
// for a query is valid and decodes to the text. Otherwise that encoding fails.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text = textOf(bytes, size);
  require(decoded(encodeQueryValue(text).encoded()) == text);
  const auto encoded = percentEncodedForQuery(text);
  require(encoded.has_value() == isText(text) && encoded.has_value() == isUTF8(text));
  if (!encoded) return 0;
  require(urlEncode(text) == *encoded && decoded(*encoded) == text);
  const auto url = URL::parse("http://a.test/?" + *encoded);
  require(url && url->query() == *encoded && !url->fragment());
  require(characterCount(text) <= text.size());
  return 0;
}
