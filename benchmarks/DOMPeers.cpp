// SPDX-License-Identifier: Apache-2.0
#include "DOMMembers.h"
#include "Peers.h"

namespace quorvelkit::bench {

namespace {

template <class Member>
void addStreet(Sum& sum, const Member& street) {
  sum.add(street.text("name"));
  const std::string direction = street.text("dir");
  sum.add(enumValue<QVStreetFunction>(direction));
  sum.add(enumValue<QVStreetConnection>(direction));
  sum.add(enumValue<QVStreetDirection>(direction));
  if (const Member highway = street.member("hwy")) {
    sum.add(highway.integer("number"));
    sum.add(enumValue<QVHighwayType>(highway.text("dir")));
  }
}

template <class Member>
void addPoint(Sum& sum, const Member& point) {
  sum.add(point.number("lat"));
  sum.add(point.number("lon"));
  sum.add(point.number("t"));
  sum.add(point.number("d"));
  sum.add(point.integer("edge"));
  sum.add(point.integer("node"));
  sum.add(point.text("notify"));
  sum.add(point.texts("say"));
  const Member turn = point.member("turn");
  if (!turn) return;
  sum.add(enumValue<QVTurnDirection>(turn.text("dir")));
  sum.add(turn.text("instruct"));
  if (const Member street = turn.member("st")) addStreet(sum, street);
}

template <class Member>
void addRoute(Sum& sum, const Member& route) {
  sum.add(route.number("distance"));
  sum.add(route.number("duration"));
  sum.add(route.integer("startNode"));
  sum.add(route.integer("endNode"));
}

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

NlohmannRoute::NlohmannRoute(std::string_view bytes) : document(nlohmann::json::parse(bytes)) {
  const auto& all = document.at("points");
  points.assign(all.begin(), all.end());
}

Sum sumOf(const NlohmannRoute& route) {
  Sum sum;
  addRoute(sum, NlohmannMember{&route.document});
  for (const nlohmann::json& point : route.points)
    addPoint(sum, NlohmannMember{&point});
  return sum;
}

RapidRoute::RapidRoute(std::string_view bytes) { parseRapid(document, bytes); }

Sum sumOf(const RapidRoute& route) {
  Sum sum;
  addRoute(sum, RapidMember{&route.document});
  RapidMember{&route.document}.forEach("points", [&](const auto& point) { addPoint(sum, point); });
  return sum;
}

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
