// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quorvelkit::sandbox {

/// Finds the points or straight lines that are nearest to a position. Immutable.
class NearestIndex {
 public:
  struct Item {
    Coordinate from;
    /// The same as `from` for a point.
    Coordinate to;
    std::uint32_t value = 0;
  };

  struct Found {
    std::uint32_t value = 0;
    /// The item's closest position.
    Coordinate position;
    double meters = 0;
  };

  explicit NearestIndex(const std::vector<Item>& items);
  ~NearestIndex();
  NearestIndex(NearestIndex&&) noexcept;
  NearestIndex& operator=(NearestIndex&&) noexcept;

  /// Absent when there are no items.
  std::optional<Found> nearest(const Coordinate& position) const;
  /// The nearest items, the closest first; fewer when there are fewer.
  std::vector<Found> nearest(const Coordinate& position, std::size_t count) const;

 private:
  struct Tree;
  std::unique_ptr<Tree> tree_;
};

}  // namespace quorvelkit::sandbox
