// SPDX-License-Identifier: Apache-2.0
#include "sandbox/PathSearch.h"

#include "sandbox/Geometry.h"
#include "sandbox/TurnCost.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <queue>

namespace quorvelkit::sandbox {
namespace {

using EdgeIndex = RoadNetwork::EdgeIndex;

constexpr double secondsPerMeterOffRoad = 3;
constexpr double secondsAgainstCourse = 90;
constexpr double secondsAgainstCourseWhenFast = 600;

/// A start or an end of the search: a position on an edge that is open to cars.
struct Terminal {
  EdgeIndex edge = 0;
  /// The position along the edge, 0 to 1.
  double fraction = 0;
  /// In seconds.
  double penalty = 0;
  const RoadPosition* position = nullptr;
};

double bearingAt(const RoadNetwork& network, const RoadPosition& position) {
  return bearing(network.vertex(network.shape(position.edge, position.segment)).position,
                 network.vertex(network.shape(position.edge, position.segment + 1)).position);
}

std::vector<Terminal> terminals(const RoadNetwork& network,
                                const std::vector<RoadPosition>& positions) {
  std::vector<Terminal> result;
  for (const RoadPosition& position : positions) {
    const double fraction = std::min(position.offset / network.length(position.edge), 1.0);
    const double penalty =
        (position.distance - positions.front().distance) * secondsPerMeterOffRoad;
    const EdgeIndex against = RoadNetwork::reversed(position.edge);
    if (network.isOpen(position.edge)) {
      result.push_back({position.edge, fraction, penalty, &position});
    }
    if (network.isOpen(against)) result.push_back({against, 1 - fraction, penalty, &position});
  }
  return result;
}

/// An A* search. Its states are edges, because the cost of a turn depends on the edge before it:
/// first all edges of the network, entered at their start, then the starts, then the ends.
class Search {
 public:
  Search(const RoadNetwork& network, std::vector<Terminal> starts, std::vector<Terminal> ends)
      : network_(network), starts_(std::move(starts)), ends_(std::move(ends)) {
    firstStart_ = network.edgeCount();
    firstEnd_ = firstStart_ + starts_.size();
    const std::size_t count = firstEnd_ + ends_.size();
    cost_.assign(count, std::numeric_limits<double>::infinity());
    cameFrom_.assign(count, 0);
    remaining_.assign(firstStart_, unknown);
    for (const Terminal& end : ends_) {
      maximumEndDistance_ =
          std::max(maximumEndDistance_,
                   distanceInMeters(ends_[0].position->position, end.position->position));
    }
  }

  std::optional<Path> run() {
    if (ends_.empty()) return std::nullopt;
    for (std::size_t at = 0; at < starts_.size(); ++at) {
      relax(firstStart_ + at, starts_[at].penalty, firstStart_ + at);
    }
    while (!open_.empty()) {
      const auto [estimate, state] = open_.top();
      open_.pop();
      if (state >= firstEnd_) return pathTo(state);
      if (estimate > cost_[state] + remaining(state)) continue;
      expand(state);
    }
    return std::nullopt;
  }

 private:
  void expand(std::size_t state) {
    const bool isStart = state >= firstStart_;
    const EdgeIndex edge =
        isStart ? starts_[state - firstStart_].edge : static_cast<EdgeIndex>(state);
    const double entered = isStart ? starts_[state - firstStart_].fraction : 0;
    for (std::size_t at = 0; at < ends_.size(); ++at) {
      const Terminal& end = ends_[at];
      if (end.edge != edge || end.fraction < entered) continue;
      const double driven = (end.fraction - entered) * network_.seconds(edge);
      relax(firstEnd_ + at, cost_[state] + driven + end.penalty, state);
    }
    const double left = cost_[state] + (1 - entered) * network_.seconds(edge);
    for (const EdgeIndex next : network_.leaving(network_.endOf(edge))) {
      relax(next, left + turnSeconds(network_, edge, next), state);
    }
  }

  void relax(std::size_t state, double cost, std::size_t from) {
    if (cost >= cost_[state]) return;
    cost_[state] = cost;
    cameFrom_[state] = from;
    open_.emplace(cost + remaining(state), state);
  }

  /// A lower bound of the remaining seconds: the straight line to the nearest end at top speed.
  double remaining(std::size_t state) {
    if (state >= firstStart_) return 0;
    double& seconds = remaining_[state];
    if (seconds == unknown) {
      const Coordinate& here =
          network_.vertex(network_.startOf(static_cast<EdgeIndex>(state))).position;
      const double meters = distanceInMeters(here, ends_[0].position->position);
      seconds = std::max(meters - maximumEndDistance_, 0.0) / network_.topSpeed();
    }
    return seconds;
  }

  Path pathTo(std::size_t state) const {
    Path path;
    path.end = *ends_[state - firstEnd_].position;
    for (state = cameFrom_[state]; state < firstStart_; state = cameFrom_[state]) {
      path.edges.push_back(static_cast<EdgeIndex>(state));
    }
    const Terminal& start = starts_[state - firstStart_];
    path.edges.push_back(start.edge);
    path.start = *start.position;
    std::reverse(path.edges.begin(), path.edges.end());
    return path;
  }

  using Entry = std::pair<double, std::size_t>;
  static constexpr double unknown = -1;

  const RoadNetwork& network_;
  std::vector<Terminal> starts_;
  std::vector<Terminal> ends_;
  std::size_t firstStart_ = 0;
  std::size_t firstEnd_ = 0;
  std::vector<double> cost_;
  std::vector<std::size_t> cameFrom_;
  std::vector<double> remaining_;
  /// The largest distance from the first end to another end, in meters.
  double maximumEndDistance_ = 0;
  std::priority_queue<Entry, std::vector<Entry>, std::greater<>> open_;
};

}  // namespace

std::optional<Path> fastestPath(const RoadNetwork& network, const std::vector<RoadPosition>& starts,
                                const std::vector<RoadPosition>& ends,
                                const std::optional<Heading>& heading) {
  std::vector<Terminal> from = terminals(network, starts);
  if (heading) {
    for (Terminal& start : from) {
      double course = bearingAt(network, *start.position);
      if (start.edge % 2 == 1) course += 180;
      if (std::abs(turnAngle(course, heading->course)) <= 90) continue;
      start.penalty += heading->fast ? secondsAgainstCourseWhenFast : secondsAgainstCourse;
    }
  }
  return Search(network, std::move(from), terminals(network, ends)).run();
}

}  // namespace quorvelkit::sandbox
