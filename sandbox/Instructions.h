// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/Maneuver.h"
#include "sandbox/PathSearch.h"
#include "sandbox/RoadNetwork.h"
#include "sandbox/RouteLine.h"

#include <string>
#include <vector>

namespace quorvelkit::sandbox {

/// The side of the road on which the destination is, in driving direction.
enum class Side { onRoad, left, right };

/// Writes the English driving instructions of a path.
class Instructions {
 public:
  /// The network, the path and the maneuvers must outlive this object.
  Instructions(const RoadNetwork& network, const Path& path, const std::vector<Maneuver>& maneuvers,
               Side destination)
      : network_(network), path_(path), maneuvers_(maneuvers), destination_(destination) {}

  /// Example: "Turn left onto Mill Street".
  std::string text(const Maneuver& maneuver) const;

  /// Sets the maneuvers and the spoken texts of the line's points. Adds announcements before each
  /// maneuver: from two miles on highways, from a quarter mile on other roads.
  void addTo(RouteLine& line) const;

 private:
  const Road& road(std::size_t step) const { return network_.road(path_.edges[step]); }
  std::string departText() const;
  std::string exitText(const Maneuver& maneuver) const;
  std::string forkText(const Maneuver& maneuver) const;
  std::string turnText(const Maneuver& maneuver) const;
  std::string roundaboutText(const Maneuver& maneuver) const;
  std::string onto(std::string_view preposition, std::size_t step) const;
  std::string rampDestination(std::string_view preposition, std::size_t step) const;
  void addAnnouncements(RouteLine& line, std::size_t index) const;
  std::vector<std::string> spokenTexts(const RouteLine& line, std::size_t index) const;

  const RoadNetwork& network_;
  const Path& path_;
  const std::vector<Maneuver>& maneuvers_;
  Side destination_;
};

}  // namespace quorvelkit::sandbox
