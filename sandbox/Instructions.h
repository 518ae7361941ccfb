// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Maneuver.h"
#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"
#include "sandbox/RouteLine.h"

#include <string>
#include <vector>

namespace quorvelkit::sandbox {

/// Which side of the road the destination is on, seen by whoever arrives.
enum class Side { here, left, right };

/// Writes in English what the driver of a path is told.
class Instructions {
 public:
  /// The network, the path and the maneuvers must outlive this.
  Instructions(const RoadNetwork& network, const Path& path, const std::vector<Maneuver>& maneuvers,
               Side destination)
      : network_(network), path_(path), maneuvers_(maneuvers), destination_(destination) {}

  /// "Turn left onto Mill Street".
  std::string text(const Maneuver& maneuver) const;

  /// Sets on the line's points which maneuver is made there, what is said there and what is
  /// announced ahead of it: on highways from two miles before, in streets from a quarter mile.
  void announce(RouteLine& line) const;

 private:
  const Road& road(std::size_t step) const { return network_.road(path_.edges[step]); }
  std::string departText() const;
  std::string exitText(const Maneuver& maneuver) const;
  std::string forkText(const Maneuver& maneuver) const;
  std::string turnText(const Maneuver& maneuver) const;
  std::string roundaboutText(const Maneuver& maneuver) const;
  std::string onto(std::string_view preposition, std::size_t step) const;
  std::string afterRamp(std::string_view preposition, std::size_t step) const;
  void announceAhead(RouteLine& line, std::size_t index) const;
  std::vector<std::string> sayAt(const RouteLine& line, std::size_t index) const;

  const RoadNetwork& network_;
  const Path& path_;
  const std::vector<Maneuver>& maneuvers_;
  Side destination_;
};

}  // namespace quorvelkit::sandbox
