// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/NearestIndex.h"

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

struct NearestIndex::Tree {
  std::vector<Item> items;
  /// Degrees of longitude are shrunk to the length of degrees of latitude in the middle of the
  /// map, so that distances in the plane compare as those on the ground do.
  double shrink = 1;
  geometry::index::rtree<Value, geometry::index::rstar<16>> tree;

  Point flat(const Coordinate& position) const {
    return {position.longitude * shrink, position.latitude};
  }
};

NearestIndex::NearestIndex(const std::vector<Item>& items) : tree_(std::make_unique<Tree>()) {
  tree_->items = items;
  if (items.empty()) return;
  const auto [south, north] = std::minmax_element(
      items.begin(), items.end(),
      [](const Item& a, const Item& b) { return a.from.latitude < b.from.latitude; });
  const double middle = (south->from.latitude + north->from.latitude) / 2;
  tree_->shrink = std::cos(middle * std::numbers::pi / 180);
  std::vector<Value> values;
  values.reserve(items.size());
  for (const Item& item : items) {
    values.emplace_back(Segment(tree_->flat(item.from), tree_->flat(item.to)),
                        static_cast<std::uint32_t>(values.size()));
  }
  // Made from all values at once, the tree is packed.
  tree_->tree = decltype(tree_->tree)(values.begin(), values.end());
}

NearestIndex::~NearestIndex() = default;
NearestIndex::NearestIndex(NearestIndex&&) noexcept = default;
NearestIndex& NearestIndex::operator=(NearestIndex&&) noexcept = default;

std::optional<NearestIndex::Found> NearestIndex::nearest(const Coordinate& position) const {
  const auto found = nearest(position, 1);
  if (found.empty()) return std::nullopt;
  return found.front();
}

std::vector<NearestIndex::Found> NearestIndex::nearest(const Coordinate& position,
                                                       std::size_t count) const {
  std::vector<Found> result;
  std::vector<Value> values;
  tree_->tree.query(geometry::index::nearest(tree_->flat(position), static_cast<unsigned>(count)),
                    std::back_inserter(values));
  for (const auto& [segment, number] : values) {
    const Item& item = tree_->items[number];
    const Coordinate closest =
        between(item.from, item.to, nearestFraction(item.from, item.to, position));
    result.push_back({item.value, closest, distanceInMeters(position, closest)});
  }
  std::sort(result.begin(), result.end(),
            [](const Found& a, const Found& b) { return a.meters < b.meters; });
  return result;
}

}  // namespace quorvelkit::sandbox
