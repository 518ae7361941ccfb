// SPDX-License-Identifier: Apache-2.0
#include "sandbox/TurnCost.h"

#include <cmath>

namespace quorvelkit::sandbox {
namespace {

constexpr double turningBack = 60;
constexpr double turningBackAtDeadEnd = 15;
constexpr double sharpTurn = 8;
constexpr double leftTurn = 6;
constexpr double rightTurn = 3;
constexpr double slightTurn = 1;
constexpr double intoLesserRoad = 6;

}  // namespace

double turnSeconds(const RoadNetwork& network, RoadNetwork::EdgeIndex from,
                   RoadNetwork::EdgeIndex onto) {
  const auto leaving = network.leaving(network.startOf(onto));
  if (onto == RoadNetwork::reversed(from)) {
    return leaving.size() == 1 ? turningBackAtDeadEnd : turningBack;
  }
  const Road& before = network.road(from);
  const Road& after = network.road(onto);
  double seconds = 0;
  // Cutting through yards and alleys is no way to save a second.
  if (after.roadClass == RoadClass::service && before.roadClass != RoadClass::service) {
    seconds += intoLesserRoad;
  }
  const bool choice = leaving.size() > (network.isOpen(RoadNetwork::reversed(from)) ? 2U : 1U);
  if (!choice || before.roundabout || (before.isHighway() && after.isHighway())) return seconds;
  const double turn = network.turn(from, onto);
  const double size = std::abs(turn);
  if (size > 130) return seconds + sharpTurn;
  if (size > 45) return seconds + (turn < 0 ? leftTurn : rightTurn);
  return size > 20 ? seconds + slightTurn : seconds;
}

}  // namespace quorvelkit::sandbox
