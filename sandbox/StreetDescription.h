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

/// Describes the streets after the maneuvers of a path, as members of a route document.
///
/// Clients read the function, the connection and the compass direction of a street from the member
/// "dir", and the family of a highway from "dir" in "hwy". "dir" of a street is its connection if
/// it is a ramp, or else the compass direction of a carriageway of a numbered highway, or else its
/// function. The members "func", "connection" and "type" are sent as well.
class StreetDescription {
 public:
  /// The arguments must outlive this object.
  StreetDescription(const RoadNetwork& network, const Path& path,
                    const std::vector<Maneuver>& maneuvers)
      : network_(network), path_(path), maneuvers_(maneuvers) {}

  /// The street after the maneuver with index `maneuver`.
  ValueMap members(std::size_t maneuver) const;

 private:
  const Road& road(std::size_t step) const { return network_.road(path_.edges[step]); }
  std::string_view connection(const Maneuver& maneuver) const;
  std::string_view compassDirection(std::size_t maneuver) const;

  const RoadNetwork& network_;
  const Path& path_;
  const std::vector<Maneuver>& maneuvers_;
};

}  // namespace quorvelkit::sandbox
