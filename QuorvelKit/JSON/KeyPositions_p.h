// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace quorvelkit::detail {

// The look-up hints of a document: for each key, the range of positions where it occurs in the
// small maps. Keys whose hashes have the same low eight bits share a range. The maps of a document
// resemble each other, so that most look-ups compare one member or none.
class KeyPositions {
 public:
  // Empty at first. Both ends are part of the range.
  struct Range {
    std::uint8_t first = UINT8_MAX;
    std::uint8_t last = 0;
  };

  Range of(std::uint32_t keyHash) const noexcept { return ranges_[keyHash % ranges_.size()]; }
  // Positions above UINT8_MAX are stored as UINT8_MAX: small maps have none.
  void add(std::uint32_t keyHash, std::size_t position) noexcept {
    Range& range = ranges_[keyHash % ranges_.size()];
    const auto stored = static_cast<std::uint8_t>(std::min<std::size_t>(position, UINT8_MAX));
    range = {std::min(range.first, stored), std::max(range.last, stored)};
  }

 private:
  std::array<Range, 256> ranges_{};
};

}  // namespace quorvelkit::detail
