// SPDX-License-Identifier: Apache-2.0
#include "sandbox/ManeuverMerger.h"

#include <cmath>
#include <optional>

namespace quorvelkit::sandbox {
namespace {

using Type = Maneuver::Type;

constexpr double maximumTurningLaneMeters = 250;
constexpr double maximumMedianMeters = 35;
constexpr double minimumNameMeters = 40;

bool isTurn(const Maneuver& maneuver) {
  return maneuver.type == Type::turn || maneuver.type == Type::nameChange ||
         maneuver.type == Type::fork;
}

class Merger {
 public:
  Merger(const RoadNetwork& network, const Path& path) : network_(network), path_(path) {}

  std::vector<Maneuver> merge(const std::vector<Maneuver>& maneuvers) {
    for (const Maneuver& next : maneuvers)
      add(next);
    return std::move(merged_);
  }

 private:
  const Road& road(std::size_t step) const { return network_.road(path_.edges[step]); }

  double metersBetween(const Maneuver& first, const Maneuver& second) const {
    double meters = 0;
    for (std::size_t step = first.after; step <= second.before; ++step) {
      meters += network_.length(path_.edges[step]);
    }
    return meters;
  }

  double metersToEnd(const Maneuver& maneuver) const {
    const bool alongWay = path_.edges.back() % 2 == 0;
    const double end = path_.end.offset;
    double meters = alongWay ? end : network_.length(path_.edges.back()) - end;
    for (std::size_t step = maneuver.before + 1; step + 1 < path_.edges.size(); ++step) {
      meters += network_.length(path_.edges[step]);
    }
    return meters;
  }

  template <typename Condition>
  bool allBetween(const Maneuver& first, const Maneuver& second, Condition condition) const {
    for (std::size_t step = first.after; step <= second.before; ++step) {
      if (!condition(road(step))) return false;
    }
    return true;
  }

  void add(const Maneuver& next) {
    Maneuver candidate = next;
    while (!merged_.empty() && merged_.back().type != Type::depart) {
      const Maneuver& last = merged_.back();
      if (next.type == Type::arrive && last.roundaboutExit == 0 &&
          (last.type == Type::roundabout || last.type == Type::nameChange) &&
          metersToEnd(last) < minimumNameMeters) {
        merged_.pop_back();
        break;
      }
      if (last.type == Type::nameChange && next.type != Type::arrive &&
          metersBetween(last, candidate) < minimumNameMeters) {
        if (candidate.type == Type::nameChange) candidate.before = last.before;
        merged_.pop_back();
        if (candidate.type == Type::nameChange &&
            road(candidate.before).isSameStreet(road(candidate.after))) {
          return;
        }
        continue;
      }
      // Before a roundabout the street is split around an island.
      if (next.type == Type::roundabout && isTurn(last) &&
          road(last.before).isSameStreet(road(last.after)) &&
          metersBetween(last, next) < maximumMedianMeters) {
        candidate.angle += last.angle;
        candidate.direction = directionWord(candidate.angle);
        merged_.pop_back();
        continue;
      }
      if (!isTurn(last) || !isTurn(candidate) || !canJoin(last, candidate)) break;
      const auto joined = join(last, candidate);
      merged_.pop_back();
      if (!joined) return;
      candidate = *joined;
    }
    merged_.push_back(candidate);
  }

  bool canJoin(const Maneuver& first, const Maneuver& second) const {
    const double meters = metersBetween(first, second);
    if (meters < maximumTurningLaneMeters && allBetween(first, second, [&](const Road& r) {
          return r.link && (!r.isHighway() || meters < minimumRampMeters);
        })) {
      return true;
    }
    // A name change shortly after a turn belongs to the turn.
    if (second.type == Type::nameChange && meters < minimumNameMeters) return true;
    if (meters > maximumMedianMeters || first.type == Type::fork || second.type == Type::fork) {
      return false;
    }
    const std::string_view from = road(first.before).label();
    const std::string_view onto = road(second.after).label();
    // Turns with another named street between them stay separate.
    return allBetween(first, second, [&](const Road& r) {
      return r.roadClass != RoadClass::service &&
             (r.label().empty() || r.label() == onto || r.label() == from || from == onto);
    });
  }

  /// Returns one maneuver for two, or none if both together only follow the street.
  std::optional<Maneuver> join(const Maneuver& first, const Maneuver& second) const {
    Maneuver joined{.type = Type::turn,
                    .before = first.before,
                    .after = second.after,
                    .angle = first.angle + second.angle};
    if (allBetween(first, second, [](const Road& r) { return r.link; })) {
      // A turning lane bends. A U-turn keeps the side of its turns.
      const double turned = network_.turn(path_.edges[joined.before], path_.edges[joined.after]);
      joined.angle = std::abs(turned) < 150 ? turned : std::copysign(turned, joined.angle);
    }
    joined.direction = directionWord(joined.angle);
    const Road& from = road(joined.before);
    const Road& onto = road(joined.after);
    if (std::abs(joined.angle) >= 150 && from.isSameStreet(onto)) {
      joined.type = Type::uTurn;
      joined.direction = joined.angle < 0 ? "uturnleft" : "uturnright";
    } else if (joined.direction == "forward") {
      if (from.isSameStreet(onto) || onto.label().empty()) return std::nullopt;
      joined.type = Type::nameChange;
    }
    return joined;
  }

  const RoadNetwork& network_;
  const Path& path_;
  std::vector<Maneuver> merged_;
};

}  // namespace

std::vector<Maneuver> mergeManeuvers(const RoadNetwork& network, const Path& path,
                                     const std::vector<Maneuver>& maneuvers) {
  return Merger(network, path).merge(maneuvers);
}

}  // namespace quorvelkit::sandbox
