// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Maneuver.h"

#include "sandbox/ManeuverMerger.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace quorvelkit::sandbox {
namespace {

using EdgeIndex = RoadNetwork::EdgeIndex;
using Type = Maneuver::Type;

/// An edge at a junction that the path does not take.
struct Alternative {
  EdgeIndex edge = 0;
  double angle = 0;
};

/// Turns below this angle, in degrees, count as straight on.
constexpr double maximumStraightAngle = 40;

class ManeuverFinder {
 public:
  ManeuverFinder(const RoadNetwork& network, const Path& path) : network_(network), path_(path) {}

  std::vector<Maneuver> find() {
    maneuvers_.push_back({.type = Type::depart});
    const std::size_t count = path_.edges.size();
    for (std::size_t step = road(0).roundabout ? addRoundabout(0) : 1; step < count;) {
      step = road(step).roundabout && !road(step - 1).roundabout ? addRoundabout(step)
                                                                 : addJunction(step);
    }
    maneuvers_.push_back({.type = Type::arrive, .before = count - 1, .after = count - 1});
    return std::move(maneuvers_);
  }

 private:
  const Road& road(std::size_t step) const { return network_.road(path_.edges[step]); }

  void add(Type type, std::string_view direction, std::size_t step, double angle) {
    maneuvers_.push_back({type, direction, step - 1, step, angle, 0});
  }

  std::vector<Alternative> alternativesAt(std::size_t step) const {
    const EdgeIndex from = path_.edges[step - 1];
    const EdgeIndex onto = path_.edges[step];
    std::vector<Alternative> alternatives;
    for (const EdgeIndex edge : network_.leaving(network_.startOf(onto))) {
      if (edge == onto || edge == RoadNetwork::reversed(from)) continue;
      alternatives.push_back({edge, network_.turn(from, edge)});
    }
    return alternatives;
  }

  /// Adds the roundabout that begins at `step`. Returns the first step after it. A path that starts
  /// in the roundabout enters it there.
  std::size_t addRoundabout(std::size_t step) {
    Maneuver maneuver{.type = Type::roundabout, .before = std::max<std::size_t>(step, 1) - 1};
    std::size_t at = step;
    int exits = 0;
    for (; at < path_.edges.size() && road(at).roundabout; ++at) {
      const auto leaving = network_.leaving(network_.endOf(path_.edges[at]));
      if (std::any_of(leaving.begin(), leaving.end(),
                      [&](EdgeIndex edge) { return !network_.road(edge).roundabout; })) {
        ++exits;
      }
    }
    if (at < path_.edges.size()) {
      maneuver.roundaboutExit = exits;
      maneuver.angle = network_.turn(path_.edges[maneuver.before], path_.edges[at]);
    } else if (step == 0) {
      return at;  // The path does not leave the roundabout.
    }
    maneuver.after = std::min(at, path_.edges.size() - 1);
    maneuver.direction = directionWord(maneuver.angle);
    maneuvers_.push_back(maneuver);
    return at + 1;
  }

  std::size_t addJunction(std::size_t step) {
    const Road& before = road(step - 1);
    const Road& after = road(step);
    const double angle = network_.turn(path_.edges[step - 1], path_.edges[step]);
    const std::vector<Alternative> alternatives = alternativesAt(step);
    const bool toRamp = after.link && !before.link && isRamp(step);
    const bool fromRamp = before.link && !after.link && isRamp(step - 1);
    if (path_.edges[step] == RoadNetwork::reversed(path_.edges[step - 1])) {
      add(Type::uTurn, "uturn", step, 180);
    } else if (toRamp && before.isHighway()) {
      if (!alternatives.empty()) {
        add(Type::exit, isRightmost(angle, alternatives) ? "exitright" : "exitleft", step, angle);
      }
    } else if (toRamp && leadsToHighway(network_, path_, step)) {
      add(Type::ramp, directionWord(angle), step, angle);
    } else if (fromRamp && after.isHighway() && std::abs(angle) < maximumStraightAngle) {
      add(Type::merge, "forward", step, angle);
    } else if (before.link && after.link) {
      addRampJunction(step, angle, alternatives);
    } else if (before.roadClass == RoadClass::motorway && after.roadClass == RoadClass::motorway) {
      addMotorwayJunction(step, angle, alternatives);
    } else {
      addStreetJunction(step, angle, alternatives);
    }
    return step + 1;
  }

  bool isRamp(std::size_t step) const {
    return linkMeters(network_, path_, step) >= minimumRampMeters;
  }

  static bool isRightmost(double angle, const std::vector<Alternative>& alternatives) {
    return std::all_of(alternatives.begin(), alternatives.end(),
                       [&](const Alternative& other) { return other.angle < angle; });
  }

  void addFork(std::size_t step, double angle, const std::vector<Alternative>& alternatives) {
    add(Type::fork, isRightmost(angle, alternatives) ? "rightatthefork" : "leftatthefork", step,
        angle);
  }

  void addRampJunction(std::size_t step, double angle,
                       const std::vector<Alternative>& alternatives) {
    const bool isFork =
        std::any_of(alternatives.begin(), alternatives.end(), [&](const Alternative& other) {
          return std::abs(other.angle) < 60 &&
                 network_.road(other.edge).roadClass != RoadClass::service;
        });
    if (std::abs(angle) >= 60 && !alternatives.empty()) {
      add(Type::turn, directionWord(angle), step, angle);
    } else if (isFork) {
      addFork(step, angle, alternatives);
    }
  }

  void addMotorwayJunction(std::size_t step, double angle,
                           const std::vector<Alternative>& alternatives) {
    const bool isFork =
        std::any_of(alternatives.begin(), alternatives.end(), [&](const Alternative& other) {
          return !network_.road(other.edge).link && network_.road(other.edge).isHighway();
        });
    if (isFork) {
      addFork(step, angle, alternatives);
    } else {
      addNameChange(step, angle);
    }
  }

  /// Adds a maneuver if the street that goes straight on has a new name.
  void addNameChange(std::size_t step, double angle) {
    if (road(step).label().empty() || road(step).isSameStreet(road(step - 1))) return;
    add(Type::nameChange, "forward", step, angle);
  }

  void addStreetJunction(std::size_t step, double angle,
                         const std::vector<Alternative>& alternatives) {
    const Road& before = road(step - 1);
    const Road& after = road(step);
    const double size = std::abs(angle);
    const bool isSame = before.isSameStreet(after);

    // The alternative with the smallest angle. A service road is no alternative to a street.
    const Alternative* straightest = nullptr;
    for (const Alternative& other : alternatives) {
      const Road& otherRoad = network_.road(other.edge);
      if (otherRoad.roadClass == RoadClass::service && after.roadClass != RoadClass::service) {
        continue;
      }
      if (straightest == nullptr || std::abs(other.angle) < std::abs(straightest->angle))
        straightest = &other;
    }
    // Without alternatives, only a clear angle counts as a turn.
    if (alternatives.empty() ? isSame || size < 50 : straightest == nullptr && size < 75) {
      return addNameChange(step, angle);
    }
    if (size >= 165) return add(Type::uTurn, directionWord(angle), step, angle);
    if (straightest == nullptr) return add(Type::turn, directionWord(angle), step, angle);

    const Road& straightestRoad = network_.road(straightest->edge);
    const double straightestSize = std::abs(straightest->angle);
    const bool straightestIsSame = before.isSameStreet(straightestRoad);
    const bool straightestIsMinor = straightestRoad.roadClass > after.roadClass;
    if (size >= maximumStraightAngle) {
      const bool bends =
          isSame && !straightestIsSame && straightestIsMinor && size < 75 && straightestSize > 35;
      if (!bends) add(Type::turn, directionWord(angle), step, angle);
      return;
    }
    const bool straightestIsClose =
        straightestSize < 55 && std::abs(angle - straightest->angle) < 80;
    const bool follows = isSame && !straightestIsSame;
    if (!straightestIsClose || (follows && (size < 25 || straightestIsMinor)) ||
        straightestSize > size + 25) {
      return addNameChange(step, angle);
    }
    if (straightestIsSame || straightestSize + 8 < size) {
      const std::string_view word = angle > straightest->angle ? "slightright" : "slightleft";
      return add(Type::turn, word, step, angle);
    }
    addFork(step, angle, {*straightest});
  }

  const RoadNetwork& network_;
  const Path& path_;
  std::vector<Maneuver> maneuvers_;
};

}  // namespace

std::string_view directionWord(double angle) {
  const double size = std::abs(angle);
  const bool right = angle > 0;
  if (size < 20) return "forward";
  if (size < 50) return right ? "slightright" : "slightleft";
  if (size < 125) return right ? "right" : "left";
  if (size < 165) return right ? "hardright" : "hardleft";
  return right ? "uturnright" : "uturnleft";
}

std::vector<Maneuver> findManeuvers(const RoadNetwork& network, const Path& path) {
  return mergeManeuvers(network, path, ManeuverFinder(network, path).find());
}

double linkMeters(const RoadNetwork& network, const Path& path, std::size_t step) {
  const auto isLink = [&](std::size_t at) { return network.road(path.edges[at]).link; };
  while (step > 0 && isLink(step) && isLink(step - 1))
    --step;
  double meters = 0;
  for (; step < path.edges.size() && isLink(step); ++step)
    meters += network.length(path.edges[step]);
  return meters;
}

bool leadsToHighway(const RoadNetwork& network, const Path& path, std::size_t step) {
  while (step < path.edges.size() && network.road(path.edges[step]).link)
    ++step;
  return step < path.edges.size() && network.road(path.edges[step]).isHighway();
}

}  // namespace quorvelkit::sandbox
