// SPDX-License-Identifier: Apache-2.0
#include "sandbox/TurnCost.h"

#include <cmath>

namespace quorvelkit::sandbox {
namespace {

// In seconds.
constexpr double uTurn = 60;
constexpr double uTurnAtDeadEnd = 15;
constexpr double sharpTurn = 8;
constexpr double leftTurn = 6;
constexpr double rightTurn = 3;
constexpr double slightTurn = 1;
constexpr double ontoServiceRoad = 6;

}  // namespace

double turnSeconds(const RoadNetwork& network, RoadNetwork::EdgeIndex from,
                   RoadNetwork::EdgeIndex onto) {
  const auto leaving = network.leaving(network.startOf(onto));
  if (onto == RoadNetwork::reversed(from)) {
    return leaving.size() == 1 ? uTurnAtDeadEnd : uTurn;
  }
  const Road& before = network.road(from);
  const Road& after = network.road(onto);
  double seconds = 0;
  // Prevents short cuts through service roads.
  if (after.roadClass == RoadClass::service && before.roadClass != RoadClass::service) {
    seconds += ontoServiceRoad;
  }
  const bool hasChoice = leaving.size() > (network.isOpen(RoadNetwork::reversed(from)) ? 2U : 1U);
  if (!hasChoice || before.roundabout || (before.isHighway() && after.isHighway())) return seconds;
  const double turn = network.turn(from, onto);
  const double size = std::abs(turn);
  if (size > 130) return seconds + sharpTurn;
  if (size > 45) return seconds + (turn < 0 ? leftTurn : rightTurn);
  return size > 20 ? seconds + slightTurn : seconds;
}

}  // namespace quorvelkit::sandbox
