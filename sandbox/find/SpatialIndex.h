// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quorvelkit::sandbox {

/// An index of points and straight lines that finds the nearest ones. Immutable.
class SpatialIndex {
 public:
  struct Item {
    Coordinate from;
    /// Equal to `from` for a point.
    Coordinate to;
    std::uint32_t value = 0;
  };

  struct Result {
    std::uint32_t value = 0;
    /// The position on the item that is nearest.
    Coordinate position;
    double meters = 0;
  };

  explicit SpatialIndex(const std::vector<Item>& items);
  ~SpatialIndex();
  SpatialIndex(SpatialIndex&&) noexcept;
  SpatialIndex& operator=(SpatialIndex&&) noexcept;

  /// Returns nothing if there are no items.
  std::optional<Result> nearest(const Coordinate& position) const;
  /// Returns at most `count` items, nearest first.
  std::vector<Result> nearest(const Coordinate& position, std::size_t count) const;

 private:
  struct Tree;
  std::unique_ptr<Tree> tree_;
};

}  // namespace quorvelkit::sandbox
