// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/SpatialIndex.h"

#include "sandbox/Geometry.h"

#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <utility>

namespace quorvelkit::sandbox {
namespace {

namespace geometry = boost::geometry;
using Point = geometry::model::point<double, 2, geometry::cs::cartesian>;
using Segment = geometry::model::segment<Point>;
using Value = std::pair<Segment, std::uint32_t>;

}  // namespace

struct SpatialIndex::Tree {
  std::vector<Item> items;
  /// Scales longitudes to the length of a degree of latitude in the middle of the map, so that
  /// distances in the plane are proportional to those on the ground.
  double longitudeScale = 1;
  geometry::index::rtree<Value, geometry::index::rstar<16>> tree;

  Point project(const Coordinate& position) const {
    return {position.longitude * longitudeScale, position.latitude};
  }
};

SpatialIndex::SpatialIndex(const std::vector<Item>& items) : tree_(std::make_unique<Tree>()) {
  tree_->items = items;
  if (items.empty()) return;
  const auto [south, north] = std::minmax_element(
      items.begin(), items.end(),
      [](const Item& a, const Item& b) { return a.from.latitude < b.from.latitude; });
  const double middle = (south->from.latitude + north->from.latitude) / 2;
  tree_->longitudeScale = std::cos(middle * std::numbers::pi / 180);
  std::vector<Value> values;
  values.reserve(items.size());
  for (const Item& item : items) {
    values.emplace_back(Segment(tree_->project(item.from), tree_->project(item.to)),
                        static_cast<std::uint32_t>(values.size()));
  }
  // A tree that is built from all values at once is packed.
  tree_->tree = decltype(tree_->tree)(values.begin(), values.end());
}

SpatialIndex::~SpatialIndex() = default;
SpatialIndex::SpatialIndex(SpatialIndex&&) noexcept = default;
SpatialIndex& SpatialIndex::operator=(SpatialIndex&&) noexcept = default;

std::optional<SpatialIndex::Result> SpatialIndex::nearest(const Coordinate& position) const {
  const auto found = nearest(position, 1);
  if (found.empty()) return std::nullopt;
  return found.front();
}

std::vector<SpatialIndex::Result> SpatialIndex::nearest(const Coordinate& position,
                                                        std::size_t count) const {
  std::vector<Result> result;
  std::vector<Value> values;
  tree_->tree.query(
      geometry::index::nearest(tree_->project(position), static_cast<unsigned>(count)),
      std::back_inserter(values));
  for (const auto& [segment, number] : values) {
    const Item& item = tree_->items[number];
    const Coordinate closest =
        between(item.from, item.to, nearestFraction(item.from, item.to, position));
    result.push_back({item.value, closest, distanceInMeters(position, closest)});
  }
  std::sort(result.begin(), result.end(),
            [](const Result& a, const Result& b) { return a.meters < b.meters; });
  return result;
}

}  // namespace quorvelkit::sandbox
