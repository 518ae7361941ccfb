// SPDX-License-Identifier: Apache-2.0
#include "DOMMembers.h"
#include "Peers.h"

namespace quorvelkit::bench {

namespace {

template <class Member>
void addResult(Sum& sum, const Member& result) {
  sum.add(result.number("score"));
  sum.add(enumValue<QVOrigin>(result.text("origin")));
  sum.add(result.text("provide"));
  sum.add(result.number("rating"));
  sum.add(result.integer("reviewCount"));
  sum.add(result.text("providerUrl"));
  sum.add(result.text("phone"));
  sum.add(result.texts("categories"));
}

template <class Member>
Sum sumOfCandidates(const Member& document) {
  Sum sum;
  document.forEach("candidates", [&](const auto& candidate) {
    sum.add(candidate.text("Address"));
    if (const auto location = candidate.member("location")) {
      sum.add(location.number("y"));
      sum.add(location.number("x"));
    }
    if (const auto attributes = candidate.member("attributes")) {
      sum.add(attributes.text("Match_addr"));
      sum.add(attributes.text("magicKey"));
      sum.add(attributes.text("Addr_type"));
    }
    addResult(sum, candidate);
  });
  return sum;
}

template <class Member>
Sum sumOfSuggestions(const Member& document) {
  Sum sum;
  document.forEach("suggestions", [&](const auto& suggestion) {
    sum.add(suggestion.text("text"));
    sum.add(suggestion.text("magicKey"));
    sum.add(suggestion.boolean("isCollection"));
    addResult(sum, suggestion);
    sum.add(suggestion.integer("price"));
    sum.add(suggestion.text("menuUrl"));
    sum.add(suggestion.text("url"));
  });
  return sum;
}

}  // namespace

Sum nlohmannCandidates(std::string_view bytes) {
  const auto document = nlohmann::json::parse(bytes);
  return sumOfCandidates(NlohmannMember{&document});
}
Sum nlohmannSuggestions(std::string_view bytes) {
  const auto document = nlohmann::json::parse(bytes);
  return sumOfSuggestions(NlohmannMember{&document});
}
Sum rapidCandidates(std::string_view bytes) {
  rapidjson::Document document;
  parseRapid(document, bytes);
  return sumOfCandidates(RapidMember{&document});
}
Sum rapidSuggestions(std::string_view bytes) {
  rapidjson::Document document;
  parseRapid(document, bytes);
  return sumOfSuggestions(RapidMember{&document});
}

}  // namespace quorvelkit::bench
