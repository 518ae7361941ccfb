// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Maneuver.h"
#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"

#include <QuorvelKit/JSON/Value.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// Describes the streets that the maneuvers of a path lead onto, as members of a route document.
///
/// Readers take a street's function, its connection and its compass direction all from the one
/// member "dir", and a highway's family from the "dir" of "hwy". So "dir" carries what tells most
/// about the street: its connection when it is one, the compass direction of a numbered highway's
/// carriageway, otherwise its function. The members "func", "connection" and "type" are sent too.
class StreetDescription {
 public:
  /// All must outlive this.
  StreetDescription(const RoadNetwork& network, const Path& path,
                    const std::vector<Maneuver>& maneuvers)
      : network_(network), path_(path), maneuvers_(maneuvers) {}

  /// The street after the maneuver of that number.
  ValueMap members(std::size_t maneuver) const;

 private:
  const Road& road(std::size_t step) const { return network_.road(path_.edges[step]); }
  std::string_view connection(const Maneuver& maneuver) const;
  std::string_view compass(std::size_t maneuver) const;

  const RoadNetwork& network_;
  const Path& path_;
  const std::vector<Maneuver>& maneuvers_;
};

}  // namespace quorvelkit::sandbox
