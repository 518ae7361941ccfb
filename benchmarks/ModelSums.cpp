// SPDX-License-Identifier: Apache-2.0
#include "ModelSums.h"

namespace quorvelkit::bench {

Sum sumOf(const QVRoute& route) {
  Sum sum;
  sum.add(route.totalDistanceInMiles());
  sum.add(route.totalDurationInMinutes());
  sum.add(route.startNode());
  sum.add(route.endNode());
  for (const QVPoint& point : route.points()) {
    sum.add(point.latitude());
    sum.add(point.longitude());
    sum.add(point.travelTimeInSeconds());
    sum.add(point.distanceInMiles());
    sum.add(point.edge());
    sum.add(point.node());
    sum.add(point.notify());
    sum.add(point.say());
    const QVTurn* const turn = point.turn();
    if (!turn) continue;
    sum.add(turn->direction());
    sum.add(turn->instruction());
    const QVStreet* const street = turn->street();
    if (!street) continue;
    sum.add(street->name());
    sum.add(street->function());
    sum.add(street->connection());
    sum.add(street->direction());
    const QVHighway* const highway = street->highway();
    if (!highway) continue;
    sum.add(highway->number());
    sum.add(highway->direction());
  }
  return sum;
}

Sum sumOf(const std::vector<QVCandidate>& candidates) {
  Sum sum;
  for (const QVCandidate& candidate : candidates) {
    sum.add(candidate.address());
    sum.add(candidate.location()->latitude);
    sum.add(candidate.location()->longitude);
    sum.add(candidate.matchAddress());
    sum.add(candidate.placeAddress());
    sum.add(candidate.addressType());
    sum.add(candidate.score());
    sum.add(candidate.origin());
    sum.add(candidate.provider());
    sum.add(candidate.rating());
    sum.add(candidate.reviewCount());
    sum.add(candidate.providerUrl());
    sum.add(candidate.phone());
    sum.add(candidate.categories());
  }
  return sum;
}

Sum sumOf(const std::vector<QVSuggestion>& suggestions) {
  Sum sum;
  for (const QVSuggestion& suggestion : suggestions) {
    sum.add(suggestion.text());
    sum.add(suggestion.magicKey());
    sum.add(suggestion.isCollection());
    sum.add(suggestion.origin());
    sum.add(suggestion.provider());
    sum.add(suggestion.score());
    sum.add(suggestion.rating());
    sum.add(suggestion.reviewCount());
    sum.add(suggestion.price());
    sum.add(suggestion.providerUrl());
    sum.add(suggestion.menuUrl());
    sum.add(suggestion.url());
    sum.add(suggestion.phone());
    sum.add(suggestion.categories());
  }
  return sum;
}

}  // namespace quorvelkit::bench
