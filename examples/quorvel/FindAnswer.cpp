// SPDX-License-Identifier: Apache-2.0
#include "FindAnswer.h"

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/QVResponseKey.h>

#include <cmath>

using namespace quorvelkit;

namespace {

/// The models read (0, 0) if there is no position.
std::optional<Coordinate> knownPosition(const std::optional<JSON>& json,
                                        const std::optional<Coordinate>& location) {
  if (!json || !location) return std::nullopt;
  const JSON document = (*json)[QVResponseKey::location];
  for (const auto key : {QVResponseKey::x, QVResponseKey::y})
    if (document[key].type() != JSON::Type::number) return std::nullopt;
  if (!(std::abs(location->latitude) <= 90 && std::abs(location->longitude) <= 180))
    return std::nullopt;
  return location;
}

}  // namespace

std::optional<Coordinate> positionOf(const QVCandidate& candidate) {
  return knownPosition(candidate.json(), candidate.location());
}

std::optional<Coordinate> positionOf(const QVReverseGeocodeResponse& response) {
  return knownPosition(response.json(), response.location());
}

std::optional<double> scoreOf(const QVCandidate& candidate) {
  const auto score = candidate.score();
  if (!score || !(*score >= 0 && *score <= 100)) return std::nullopt;
  return score;
}
