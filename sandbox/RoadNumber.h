// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvelkit::sandbox {

/// The number of a road and its family, from an OSM "ref" tag.
struct RoadNumber {
  /// The raw value of the family: "I", "US", "SR", "CR", "CA" or "Hwy".
  std::string_view family;
  std::int64_t number = 0;

  /// Reads the first number in a text such as "I 95", "MD 151;US 40 Truck" or "N-260". The code of
  /// a state of the USA and a space mean "SR"; an unknown prefix means "Hwy".
  static std::optional<RoadNumber> fromRef(std::string_view ref);

  friend bool operator==(const RoadNumber&, const RoadNumber&) = default;
};

}  // namespace quorvelkit::sandbox
