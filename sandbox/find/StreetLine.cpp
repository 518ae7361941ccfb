// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/StreetLine.h"

#include "sandbox/Geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace quorvelkit::sandbox {
namespace {

/// Of both sides together: one house every ten meters on each side.
constexpr double metersPerNumber = 5;

/// Appends the ways that begin or end at the end of the line, until there are none.
void extend(std::vector<Coordinate>& line, std::vector<std::vector<Coordinate>>& ways) {
  while (true) {
    const auto next = std::find_if(ways.begin(), ways.end(), [&](const auto& way) {
      return way.front() == line.back() || way.back() == line.back();
    });
    if (next == ways.end()) return;
    if (next->front() != line.back()) std::reverse(next->begin(), next->end());
    line.insert(line.end(), next->begin() + 1, next->end());
    ways.erase(next);
  }
}

}  // namespace

std::vector<std::vector<Coordinate>> joinLines(std::vector<std::vector<Coordinate>> lines) {
  std::vector<std::vector<Coordinate>> joined;
  while (!lines.empty()) {
    std::vector<Coordinate> line = std::move(lines.front());
    lines.erase(lines.begin());
    extend(line, lines);
    std::reverse(line.begin(), line.end());
    extend(line, lines);
    std::reverse(line.begin(), line.end());
    joined.push_back(std::move(line));
  }
  return joined;
}

StreetLine::StreetLine(std::vector<std::vector<Coordinate>> ways) {
  std::vector<std::vector<Coordinate>> lines = joinLines(std::move(ways));
  for (auto& line : lines) {
    Chain chain;
    chain.line = std::move(line);
    chain.along.push_back(0);
    for (std::size_t i = 1; i < chain.line.size(); ++i) {
      chain.along.push_back(chain.length() + distanceInMeters(chain.line[i - 1], chain.line[i]));
    }
    chains_.push_back(std::move(chain));
  }
  std::stable_sort(chains_.begin(), chains_.end(),
                   [](const Chain& a, const Chain& b) { return a.length() > b.length(); });
}

void StreetLine::addHouse(int number, const Coordinate& position) {
  houses_.push_back({number, nearest(position)});
}

bool StreetLine::hasHouse(int number) const {
  return std::any_of(houses_.begin(), houses_.end(),
                     [&](const House& house) { return house.number == number; });
}

StreetLine::LinePosition StreetLine::nearest(const Coordinate& position) const {
  LinePosition best;
  best.meters = std::numeric_limits<double>::infinity();
  for (std::size_t c = 0; c < chains_.size(); ++c) {
    const auto& [line, along] = chains_[c];
    for (std::size_t i = 1; i < line.size(); ++i) {
      const double fraction = nearestFraction(line[i - 1], line[i], position);
      const Coordinate closest = between(line[i - 1], line[i], fraction);
      const double meters = distanceInMeters(closest, position);
      if (meters >= best.meters) continue;
      const double course = bearing(line[i - 1], line[i]);
      best = {c, std::lerp(along[i - 1], along[i], fraction), closest, meters,
              turnAngle(course, bearing(closest, position)) < 0};
    }
  }
  return best;
}

void StreetLine::forEachSegment(
    const std::function<void(const Coordinate&, const Coordinate&)>& call) const {
  for (const Chain& chain : chains_) {
    for (std::size_t i = 1; i < chain.line.size(); ++i)
      call(chain.line[i - 1], chain.line[i]);
  }
}

double StreetLine::metersTo(const Coordinate& position) const { return nearest(position).meters; }

Coordinate StreetLine::positionAlong(std::size_t chain, double along) const {
  const Chain& on = chains_[chain];
  const auto above = std::upper_bound(on.along.begin(), on.along.end(), along);
  if (above == on.along.begin()) return on.line.front();
  if (above == on.along.end()) return on.line.back();
  const auto i = static_cast<std::size_t>(above - on.along.begin());
  return between(on.line[i - 1], on.line[i],
                 (along - on.along[i - 1]) / (on.along[i] - on.along[i - 1]));
}

Coordinate StreetLine::midpoint() const {
  Coordinate sum{0, 0};
  double weight = 0;
  for (const auto& [line, along] : chains_) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      const double length = along[i] - along[i - 1];
      const Coordinate half = between(line[i - 1], line[i], 0.5);
      sum.latitude += half.latitude * length;
      sum.longitude += half.longitude * length;
      weight += length;
    }
  }
  if (weight == 0) return chains_.front().line.front();
  return nearest({sum.latitude / weight, sum.longitude / weight}).position;
}

std::vector<StreetLine::House> StreetLine::interpolationHouses(int parity) const {
  std::vector<House> result;
  std::copy_if(houses_.begin(), houses_.end(), std::back_inserter(result),
               [&](const House& house) { return house.number % 2 == parity; });
  if (result.size() >= 2) return result;
  result = houses_;
  if (result.size() >= 2) return result;

  // Estimates numbers on the longest chain, from a single known house if there is one.
  const double length = chains_.front().length();
  const auto addEstimated = [&](int number, double along) {
    result.push_back({number, {0, along, positionAlong(0, along), 0, false}});
  };
  double last = 0;
  int number = 0;
  if (!result.empty() && result.front().place.chain == 0) {
    last = result.front().place.along;
    number = result.front().number;
  }
  if (number != 1) addEstimated(1, 0);
  const int rest = static_cast<int>((length - last) / metersPerNumber);
  addEstimated(std::max(number + rest, 2), length);
  return result;
}

std::optional<Coordinate> StreetLine::positionOf(int number) const {
  const House* below = nullptr;
  const House* above = nullptr;
  const std::vector<House> all = interpolationHouses(std::abs(number) % 2);
  for (const House& house : all) {
    if (house.number <= number && (below == nullptr || house.number > below->number))
      below = &house;
    if (house.number >= number && (above == nullptr || house.number < above->number))
      above = &house;
  }
  if (below == nullptr || above == nullptr) return std::nullopt;
  if (below->number == above->number) return below->place.position;
  const double fraction = static_cast<double>(number - below->number) /
                          static_cast<double>(above->number - below->number);
  if (below->place.chain != above->place.chain) {
    // On different chains: interpolates on a straight line, then moves to the street.
    return nearest(between(below->place.position, above->place.position, fraction)).position;
  }
  return positionAlong(below->place.chain,
                       std::lerp(below->place.along, above->place.along, fraction));
}

std::optional<int> StreetLine::numberAt(const Coordinate& position) const {
  const LinePosition here = nearest(position);
  // The parity of most known houses on this side; if there are none, odd on the left.
  int votes = 0;
  for (const House& house : houses_) {
    if (house.place.chain == here.chain && house.place.onLeft == here.onLeft) {
      votes += house.number % 2 == 1 ? 1 : -1;
    }
  }
  const int parity = votes != 0 ? (votes > 0 ? 1 : 0) : here.onLeft ? 1 : 0;

  const House* before = nullptr;
  const House* after = nullptr;
  const std::vector<House> all = interpolationHouses(parity);
  for (const House& house : all) {
    if (house.place.chain != here.chain) continue;
    const double along = house.place.along;
    if (along <= here.along && (before == nullptr || along > before->place.along)) before = &house;
    if (along >= here.along && (after == nullptr || along < after->place.along)) after = &house;
  }
  if (before == nullptr || after == nullptr) return std::nullopt;
  const double span = after->place.along - before->place.along;
  const double fraction = span > 0 ? (here.along - before->place.along) / span : 0;
  const double exact = std::lerp(before->number, after->number, fraction);
  int number = 2 * static_cast<int>(std::lround((exact - parity) / 2)) + parity;
  // Keeps the rounded number between the two known numbers.
  const auto [low, high] = std::minmax(before->number, after->number);
  if (number < low) number += 2;
  if (number > high) number -= 2;
  return number < low ? low : number;
}

}  // namespace quorvelkit::sandbox
