// SPDX-License-Identifier: Apache-2.0
#include "Fuzzing.h"

#include <QuorvelKit/QVAddressCandidatesResponse.h>
#include <QuorvelKit/QVReverseGeocodeResponse.h>
#include <QuorvelKit/QVSuggestResponse.h>

using namespace quorvelkit;
using namespace quorvelkit::fuzz;

// Input: the body of a find server response, which is used for all three resources. All models can
// be read, and the lists are as long as in the document.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string body = textOf(bytes, size);
  const JSON json{Data(body)};
  for (const int status : {200, 503}) {
    const auto suggestions = responseFor<QVSuggestResponse>(body, status)->suggestions();
    require(suggestions.size() == json["suggestions"].arrayValue().size());
    for (const QVSuggestion& s : suggestions) {
      readAll(s.text(), s.magicKey(), s.isCollection(), s.origin(), s.provider(), s.score(),
              s.rating(), s.reviewCount(), s.price(), s.providerUrl(), s.menuUrl(), s.url(),
              s.phone(), s.categories());
    }
    const auto candidates = responseFor<QVAddressCandidatesResponse>(body, status)->candidates();
    require(candidates.size() == json["candidates"].arrayValue().size());
    for (const QVCandidate& c : candidates) {
      require(c.location().has_value());
      readAll(c.address(), c.score(), c.attributes(), c.matchAddress(), c.placeAddress(),
              c.addressType(), c.origin(), c.provider(), c.rating(), c.reviewCount(),
              c.providerUrl(), c.phone(), c.categories());
    }
    const auto found = responseFor<QVReverseGeocodeResponse>(body, status);
    require(found->location() && found->address());
    const QVAddress& a = *found->address();
    readAll(a.region(), a.postal(), a.matchAddress(), a.locationName(), a.address(), a.countyCode(),
            a.postalExtension(), a.neighborhood(), a.subregion(), a.city());
  }
  return 0;
}
