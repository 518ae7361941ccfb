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

}  // namespace quorvelkit::bench
