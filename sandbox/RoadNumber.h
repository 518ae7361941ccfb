// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvelkit::sandbox {

/// The number of a road and the family it belongs to, read from an OSM "ref" tag.
struct RoadNumber {
  /// The family as route documents write it: "I", "US", "SR", "CR", "CA" or "Hwy".
  std::string_view family;
  std::int64_t number = 0;

  /// Reads the first number in texts such as "I 95", "MD 151;US 40 Truck", "N-260". The name of a
  /// state of the USA, set off with a blank, means a state road; an unknown prefix means "Hwy".
  static std::optional<RoadNumber> fromRef(std::string_view ref);

  friend bool operator==(const RoadNumber&, const RoadNumber&) = default;
};

}  // namespace quorvelkit::sandbox
