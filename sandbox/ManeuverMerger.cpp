// SPDX-License-Identifier: Apache-2.0
#include "sandbox/ManeuverMerger.h"

#include <cmath>
#include <optional>

namespace quorvelkit::sandbox {
namespace {

using Manner = Maneuver::Manner;

constexpr double longestTurningLane = 250;
constexpr double widestMedian = 35;
constexpr double shortestStretchWorthTelling = 40;

bool isTurn(const Maneuver& maneuver) {
  return maneuver.manner == Manner::turn || maneuver.manner == Manner::proceed ||
         maneuver.manner == Manner::fork;
}

class Merger {
 public:
  Merger(const RoadNetwork& network, const Path& path) : network_(network), path_(path) {}

  std::vector<Maneuver> merge(const std::vector<Maneuver>& maneuvers) {
    for (const Maneuver& next : maneuvers)
      take(next);
    return std::move(kept_);
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

  void take(const Maneuver& next) {
    Maneuver candidate = next;
    while (!kept_.empty() && kept_.back().manner != Manner::depart) {
      const Maneuver& last = kept_.back();
      if (next.manner == Manner::arrive && last.roundaboutExit == 0 &&
          (last.manner == Manner::roundabout || last.manner == Manner::proceed) &&
          metersToEnd(last) < shortestStretchWorthTelling) {
        kept_.pop_back();
        break;
      }
      if (last.manner == Manner::proceed && next.manner != Manner::arrive &&
          metersBetween(last, candidate) < shortestStretchWorthTelling) {
        if (candidate.manner == Manner::proceed) candidate.before = last.before;
        kept_.pop_back();
        if (candidate.manner == Manner::proceed &&
            road(candidate.before).isSameStreet(road(candidate.after))) {
          return;
        }
        continue;
      }
      // The street parts around an island where it meets a roundabout.
      if (next.manner == Manner::roundabout && isTurn(last) &&
          road(last.before).isSameStreet(road(last.after)) &&
          metersBetween(last, next) < widestMedian) {
        candidate.angle += last.angle;
        candidate.direction = directionWord(candidate.angle);
        kept_.pop_back();
        continue;
      }
      if (!isTurn(last) || !isTurn(candidate) || !belongTogether(last, candidate)) break;
      const auto joined = join(last, candidate);
      kept_.pop_back();
      if (!joined) return;
      candidate = *joined;
    }
    kept_.push_back(candidate);
  }

  bool belongTogether(const Maneuver& first, const Maneuver& second) const {
    const double meters = metersBetween(first, second);
    if (meters < longestTurningLane &&
        allBetween(first, second, [](const Road& r) { return r.link && !r.isHighway(); })) {
      return true;
    }
    // A turn onto a street that has another name some meters on is a turn onto that one.
    if (second.manner == Manner::proceed && meters < shortestStretchWorthTelling) return true;
    if (meters > widestMedian || first.manner == Manner::fork || second.manner == Manner::fork) {
      return false;
    }
    const std::string_view from = road(first.before).label();
    const std::string_view onto = road(second.after).label();
    // Two turns to the same side around a named block are two turns for the driver as well.
    return allBetween(first, second, [&](const Road& r) {
      return r.roadClass != RoadClass::service &&
             (r.label().empty() || r.label() == onto || r.label() == from || from == onto);
    });
  }

  /// One maneuver for two; none when the street just goes on.
  std::optional<Maneuver> join(const Maneuver& first, const Maneuver& second) const {
    Maneuver joined{.manner = Manner::turn,
                    .before = first.before,
                    .after = second.after,
                    .angle = first.angle + second.angle};
    joined.direction = directionWord(joined.angle);
    const Road& from = road(joined.before);
    const Road& onto = road(joined.after);
    if (std::abs(joined.angle) >= 150 && from.isSameStreet(onto)) {
      joined.manner = Manner::turnBack;
      joined.direction = joined.angle < 0 ? "uturnleft" : "uturnright";
    } else if (joined.direction == "forward") {
      if (from.isSameStreet(onto) || onto.label().empty()) return std::nullopt;
      joined.manner = Manner::proceed;
    }
    return joined;
  }

  const RoadNetwork& network_;
  const Path& path_;
  std::vector<Maneuver> kept_;
};

}  // namespace

std::vector<Maneuver> mergeManeuvers(const RoadNetwork& network, const Path& path,
                                     const std::vector<Maneuver>& maneuvers) {
  return Merger(network, path).merge(maneuvers);
}

}  // namespace quorvelkit::sandbox
