// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Maneuver.h"

#include "sandbox/ManeuverMerger.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace quorvelkit::sandbox {
namespace {

using EdgeIndex = RoadNetwork::EdgeIndex;
using Manner = Maneuver::Manner;

/// A way that the path might have taken at a junction.
struct Other {
  EdgeIndex edge = 0;
  double angle = 0;
};

/// Turns smaller than this are still "straight on" for whoever drives there.
constexpr double straight = 40;

class Finder {
 public:
  Finder(const RoadNetwork& network, const Path& path) : network_(network), path_(path) {}

  std::vector<Maneuver> find() {
    found_.push_back({.manner = Manner::depart});
    const std::size_t count = path_.edges.size();
    for (std::size_t step = 1; step < count;) {
      step = road(step).roundabout && !road(step - 1).roundabout ? passRoundabout(step)
                                                                 : passJunction(step);
    }
    found_.push_back({.manner = Manner::arrive, .before = count - 1, .after = count - 1});
    return std::move(found_);
  }

 private:
  const Road& road(std::size_t step) const { return network_.road(path_.edges[step]); }

  void add(Manner manner, std::string_view direction, std::size_t step, double angle) {
    found_.push_back({manner, direction, step - 1, step, angle, 0});
  }

  std::vector<Other> otherWays(std::size_t step) const {
    const EdgeIndex from = path_.edges[step - 1];
    const EdgeIndex onto = path_.edges[step];
    std::vector<Other> others;
    for (const EdgeIndex edge : network_.leaving(network_.startOf(onto))) {
      if (edge == onto || edge == RoadNetwork::reversed(from)) continue;
      others.push_back({edge, network_.turn(from, edge)});
    }
    return others;
  }

  /// Takes in the roundabout that begins at a step; returns the step to go on with.
  std::size_t passRoundabout(std::size_t step) {
    Maneuver maneuver{.manner = Manner::roundabout, .before = step - 1};
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
      maneuver.angle = network_.turn(path_.edges[step - 1], path_.edges[at]);
    }
    maneuver.after = std::min(at, path_.edges.size() - 1);
    maneuver.direction = directionWord(maneuver.angle);
    found_.push_back(maneuver);
    return at + 1;
  }

  std::size_t passJunction(std::size_t step) {
    const Road& before = road(step - 1);
    const Road& after = road(step);
    const double angle = network_.turn(path_.edges[step - 1], path_.edges[step]);
    const std::vector<Other> others = otherWays(step);
    if (path_.edges[step] == RoadNetwork::reversed(path_.edges[step - 1])) {
      add(Manner::turnBack, "uturn", step, 180);
    } else if (after.link && !before.link && before.isHighway()) {
      if (!others.empty()) {
        add(Manner::exit, isRight(angle, others) ? "exitright" : "exitleft", step, angle);
      }
    } else if (after.link && !before.link && leadsToHighway(network_, path_, step)) {
      add(Manner::ramp, directionWord(angle), step, angle);
    } else if (before.link && !after.link && after.isHighway() && std::abs(angle) < straight) {
      add(Manner::merge, "forward", step, angle);
    } else if (before.link && after.link) {
      passRampFork(step, angle, others);
    } else if (before.roadClass == RoadClass::motorway && after.roadClass == RoadClass::motorway) {
      passMotorway(step, angle, others);
    } else {
      passStreets(step, angle, others);
    }
    return step + 1;
  }

  static bool isRight(double angle, const std::vector<Other>& others) {
    return std::all_of(others.begin(), others.end(),
                       [&](const Other& other) { return other.angle < angle; });
  }

  void addFork(std::size_t step, double angle, const std::vector<Other>& others) {
    add(Manner::fork, isRight(angle, others) ? "rightatthefork" : "leftatthefork", step, angle);
  }

  void passRampFork(std::size_t step, double angle, const std::vector<Other>& others) {
    const bool isFork = std::any_of(others.begin(), others.end(), [&](const Other& other) {
      return std::abs(other.angle) < 60 &&
             network_.road(other.edge).roadClass != RoadClass::service;
    });
    if (std::abs(angle) >= 60 && !others.empty()) {
      add(Manner::turn, directionWord(angle), step, angle);
    } else if (isFork) {
      addFork(step, angle, others);
    }
  }

  void passMotorway(std::size_t step, double angle, const std::vector<Other>& others) {
    const bool isFork = std::any_of(others.begin(), others.end(), [&](const Other& other) {
      return !network_.road(other.edge).link && network_.road(other.edge).isHighway();
    });
    if (isFork) {
      addFork(step, angle, others);
    } else {
      passRename(step, angle);
    }
  }

  /// Tells the new name of the street that goes straight on.
  void passRename(std::size_t step, double angle) {
    if (road(step).label().empty() || road(step).isSameStreet(road(step - 1))) return;
    add(Manner::proceed, "forward", step, angle);
  }

  void passStreets(std::size_t step, double angle, const std::vector<Other>& others) {
    const Road& before = road(step - 1);
    const Road& after = road(step);
    const double size = std::abs(angle);
    const bool same = before.isSameStreet(after);

    // Yards and alleys beside a street leave no doubt about where the street goes.
    const Other* rival = nullptr;
    for (const Other& other : others) {
      const Road& otherRoad = network_.road(other.edge);
      if (otherRoad.roadClass == RoadClass::service && after.roadClass != RoadClass::service) {
        continue;
      }
      if (rival == nullptr || std::abs(other.angle) < std::abs(rival->angle)) rival = &other;
    }
    // Where no other way is open a driver still turns from one street into another.
    if (others.empty() ? same || size < 50 : rival == nullptr && size < 75) {
      return passRename(step, angle);
    }
    if (size >= 165) return add(Manner::turnBack, directionWord(angle), step, angle);
    if (rival == nullptr) return add(Manner::turn, directionWord(angle), step, angle);

    const Road& rivalRoad = network_.road(rival->edge);
    const double rivalSize = std::abs(rival->angle);
    const bool rivalIsSame = before.isSameStreet(rivalRoad);
    const bool rivalIsLesser = rivalRoad.roadClass > after.roadClass;
    if (size >= straight) {
      const bool bends = same && !rivalIsSame && rivalIsLesser && size < 75 && rivalSize > 35;
      if (!bends) add(Manner::turn, directionWord(angle), step, angle);
      return;
    }
    const bool rivalIsClose = rivalSize < 55 && std::abs(angle - rival->angle) < 80;
    const bool follows = same && !rivalIsSame;
    if (!rivalIsClose || (follows && (size < 25 || rivalIsLesser)) || rivalSize > size + 25) {
      return passRename(step, angle);
    }
    if (rivalIsSame || rivalSize + 8 < size) {
      const std::string_view word = angle > rival->angle ? "slightright" : "slightleft";
      return add(Manner::turn, word, step, angle);
    }
    addFork(step, angle, {*rival});
  }

  const RoadNetwork& network_;
  const Path& path_;
  std::vector<Maneuver> found_;
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
  return mergeManeuvers(network, path, Finder(network, path).find());
}

bool leadsToHighway(const RoadNetwork& network, const Path& path, std::size_t step) {
  while (step < path.edges.size() && network.road(path.edges[step]).link)
    ++step;
  return step < path.edges.size() && network.road(path.edges[step]).isHighway();
}

}  // namespace quorvelkit::sandbox
