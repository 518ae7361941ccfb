// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace quorvelkit::detail {

// Between which places keys stand in the maps of a document, by their hashes. The maps of a
// document are like each other, so that one look mostly tells whether a map has a key.
class KeyPlaces {
 public:
  // None at first.
  struct Range {
    std::uint8_t first = UINT8_MAX;
    std::uint8_t last = 0;
  };

  Range of(std::uint32_t hash) const noexcept { return ranges_[hash % ranges_.size()]; }
  // Far places count as the last one of which a range can tell.
  void add(std::uint32_t hash, std::size_t place) noexcept {
    Range& range = ranges_[hash % ranges_.size()];
    const auto near = static_cast<std::uint8_t>(std::min<std::size_t>(place, UINT8_MAX));
    range = {std::min(range.first, near), std::max(range.last, near)};
  }

 private:
  std::array<Range, 256> ranges_{};
};

}  // namespace quorvelkit::detail
