// SPDX-License-Identifier: Apache-2.0
#include "FindPeers.h"

#include "DOMMembers.h"

namespace quorvelkit::bench {

namespace {

using simdjson::ondemand::object;
using simdjson::ondemand::raw_json_string;
using simdjson::ondemand::value;

void set(std::string& to, value& from) { to = from.get_string().value(); }

bool readCommon(raw_json_string key, value& given, PlainResult& result) {
  if (key == "origin") {
    result.origin = caseOf<QVOrigin>(given.get_string().value());
  } else if (key == "provide") {
    set(result.provider, given);
  } else if (key == "score") {
    result.score = given.get_double();
  } else if (key == "rating") {
    result.rating = given.get_double();
  } else if (key == "reviewCount") {
    result.reviewCount = given.get_int64();
  } else if (key == "providerUrl") {
    set(result.providerUrl, given);
  } else if (key == "phone") {
    set(result.phone, given);
  } else if (key == "categories") {
    for (auto category : given.get_array())
      result.categories.emplace_back(category.get_string().value());
  } else {
    return false;
  }
  return true;
}

void read(object from, PlainCandidate& candidate) {
  for (auto member : from) {
    const raw_json_string key = member.key();
    value given = member.value();
    if (key == "Address") {
      set(candidate.address, given);
    } else if (key == "location") {
      object location = given.get_object();
      candidate.longitude = location["x"].get_double();
      candidate.latitude = location["y"].get_double();
    } else if (key == "attributes") {
      for (auto attribute : given.get_object()) {
        const raw_json_string its = attribute.key();
        value text = attribute.value();
        if (its == "Match_addr") set(candidate.matchAddress, text);
        if (its == "magicKey") set(candidate.placeAddress, text);
        if (its == "Addr_type") set(candidate.addressType, text);
      }
    } else {
      readCommon(key, given, candidate);
    }
  }
}

void read(object from, PlainSuggestion& suggestion) {
  for (auto member : from) {
    const raw_json_string key = member.key();
    value given = member.value();
    if (key == "text") {
      set(suggestion.text, given);
    } else if (key == "magicKey") {
      set(suggestion.magicKey, given);
    } else if (key == "isCollection") {
      suggestion.isCollection = given.get_bool();
    } else if (!readCommon(key, given, suggestion)) {
      if (key == "price") suggestion.price = given.get_int64();
      if (key == "menuUrl") set(suggestion.menuUrl, given);
      if (key == "url") set(suggestion.url, given);
    }
  }
}

template <class Result>
std::vector<Result> onDemand(simdjson::ondemand::parser& parser, simdjson::padded_string_view bytes,
                             std::string_view list) {
  std::vector<Result> results;
  simdjson::ondemand::document document = parser.iterate(bytes);
  for (auto result : document[list].get_array())
    read(result.get_object(), results.emplace_back());
  return results;
}

void addCommon(Sum& sum, const PlainResult& result) {
  sum.add(result.score);
  sum.add(result.origin);
  sum.add(result.provider);
  sum.add(result.rating);
  sum.add(result.reviewCount);
  sum.add(result.providerUrl);
  sum.add(result.phone);
  sum.add(result.categories);
}

template <class Member>
void addCommonMembers(Sum& sum, const Member& result) {
  sum.add(result.number("score"));
  sum.add(caseOf<QVOrigin>(result.text("origin")));
  sum.add(result.text("provide"));
  sum.add(result.number("rating"));
  sum.add(result.integer("reviewCount"));
  sum.add(result.text("providerUrl"));
  sum.add(result.text("phone"));
  sum.add(result.texts("categories"));
}

template <class Member>
Sum candidates(const Member& document) {
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
    addCommonMembers(sum, candidate);
  });
  return sum;
}

template <class Member>
Sum suggestions(const Member& document) {
  Sum sum;
  document.forEach("suggestions", [&](const auto& suggestion) {
    sum.add(suggestion.text("text"));
    sum.add(suggestion.text("magicKey"));
    sum.add(suggestion.boolean("isCollection"));
    addCommonMembers(sum, suggestion);
    sum.add(suggestion.integer("price"));
    sum.add(suggestion.text("menuUrl"));
    sum.add(suggestion.text("url"));
  });
  return sum;
}

}  // namespace

Sum sumOf(const PlainCandidates& all) {
  Sum sum;
  for (const PlainCandidate& candidate : all) {
    sum.add(candidate.address);
    sum.add(candidate.latitude);
    sum.add(candidate.longitude);
    sum.add(candidate.matchAddress);
    sum.add(candidate.placeAddress);
    sum.add(candidate.addressType);
    addCommon(sum, candidate);
  }
  return sum;
}

Sum sumOf(const PlainSuggestions& all) {
  Sum sum;
  for (const PlainSuggestion& suggestion : all) {
    sum.add(suggestion.text);
    sum.add(suggestion.magicKey);
    sum.add(suggestion.isCollection);
    addCommon(sum, suggestion);
    sum.add(suggestion.price);
    sum.add(suggestion.menuUrl);
    sum.add(suggestion.url);
  }
  return sum;
}

PlainCandidates onDemandCandidates(simdjson::ondemand::parser& parser,
                                   simdjson::padded_string_view bytes) {
  return onDemand<PlainCandidate>(parser, bytes, "candidates");
}
PlainSuggestions onDemandSuggestions(simdjson::ondemand::parser& parser,
                                     simdjson::padded_string_view bytes) {
  return onDemand<PlainSuggestion>(parser, bytes, "suggestions");
}

Sum nlohmannCandidates(std::string_view bytes) {
  const auto document = nlohmann::json::parse(bytes);
  return candidates(NlohmannMember{&document});
}
Sum nlohmannSuggestions(std::string_view bytes) {
  const auto document = nlohmann::json::parse(bytes);
  return suggestions(NlohmannMember{&document});
}
Sum rapidCandidates(std::string_view bytes) {
  rapidjson::Document document;
  parseRapid(document, bytes);
  return candidates(RapidMember{&document});
}
Sum rapidSuggestions(std::string_view bytes) {
  rapidjson::Document document;
  parseRapid(document, bytes);
  return suggestions(RapidMember{&document});
}

}  // namespace quorvelkit::bench
