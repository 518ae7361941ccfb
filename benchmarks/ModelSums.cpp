// SPDX-License-Identifier: Apache-2.0
#include "ModelSums.h"

namespace quorvelkit::bench {

namespace {

// A model has a property where the plain struct has a member of the same name, so one template
// reads both.

template <class Highway>
void addHighway(Sum& sum, const Highway& highway) {
  sum.addFields<&Highway::number, &Highway::direction>(highway);
}

template <class Street>
void addStreet(Sum& sum, const Street& street) {
  sum.addFields<&Street::name, &Street::function, &Street::connection, &Street::direction>(street);
  if (const auto& highway = std::invoke(&Street::highway, street)) addHighway(sum, *highway);
}

template <class Turn>
void addTurn(Sum& sum, const Turn& turn) {
  sum.addFields<&Turn::direction, &Turn::instruction>(turn);
  if (const auto& street = std::invoke(&Turn::street, turn)) addStreet(sum, *street);
}

template <class Point>
void addPoint(Sum& sum, const Point& point) {
  sum.addFields<&Point::latitude, &Point::longitude, &Point::travelTimeInSeconds,
                &Point::distanceInMiles, &Point::edge, &Point::node, &Point::notify, &Point::say>(
      point);
  if (const auto& turn = std::invoke(&Point::turn, point)) addTurn(sum, *turn);
}

template <class Route>
Sum sumOfRoute(const Route& route) {
  Sum sum;
  sum.addFields<&Route::totalDistanceInMiles, &Route::totalDurationInMinutes, &Route::startNode,
                &Route::endNode>(route);
  for (const auto& point : std::invoke(&Route::points, route))
    addPoint(sum, point);
  return sum;
}

template <class Result>
void addResult(Sum& sum, const Result& result) {
  sum.addFields<&Result::score, &Result::origin, &Result::provider, &Result::rating,
                &Result::reviewCount, &Result::providerUrl, &Result::phone, &Result::categories>(
      result);
}

Coordinate locationOf(const QVCandidate& candidate) { return *candidate.location(); }
Coordinate locationOf(const PlainCandidate& candidate) { return candidate.location; }

template <class Candidate>
Sum sumOfCandidates(const std::vector<Candidate>& candidates) {
  Sum sum;
  for (const Candidate& candidate : candidates) {
    const Coordinate location = locationOf(candidate);
    sum.add(location.latitude);
    sum.add(location.longitude);
    sum.addFields<&Candidate::address, &Candidate::matchAddress, &Candidate::placeAddress,
                  &Candidate::addressType>(candidate);
    addResult(sum, candidate);
  }
  return sum;
}

template <class Suggestion>
Sum sumOfSuggestions(const std::vector<Suggestion>& suggestions) {
  Sum sum;
  for (const Suggestion& suggestion : suggestions) {
    sum.addFields<&Suggestion::text, &Suggestion::magicKey, &Suggestion::isCollection,
                  &Suggestion::price, &Suggestion::menuUrl, &Suggestion::url>(suggestion);
    addResult(sum, suggestion);
  }
  return sum;
}

}  // namespace

Sum sumOf(const QVRoute& route) { return sumOfRoute(route); }
Sum sumOf(const PlainRoute& route) { return sumOfRoute(route); }
Sum sumOf(const std::vector<QVCandidate>& candidates) { return sumOfCandidates(candidates); }
Sum sumOf(const std::vector<PlainCandidate>& candidates) { return sumOfCandidates(candidates); }
Sum sumOf(const std::vector<QVSuggestion>& suggestions) { return sumOfSuggestions(suggestions); }
Sum sumOf(const std::vector<PlainSuggestion>& suggestions) { return sumOfSuggestions(suggestions); }

}  // namespace quorvelkit::bench
