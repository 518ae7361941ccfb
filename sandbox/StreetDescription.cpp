// SPDX-License-Identifier: Apache-2.0
#include "sandbox/StreetDescription.h"

#include "sandbox/Geometry.h"

#include <QuorvelKit/JSON/JSON.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvelkit::sandbox {
namespace {

std::string_view functionWord(RoadClass roadClass) {
  switch (roadClass) {
    case RoadClass::motorway: return "highway";
    case RoadClass::trunk: return "localhighway";
    case RoadClass::primary:
    case RoadClass::secondary: return "arterial";
    case RoadClass::tertiary: return "localarterial";
    case RoadClass::residential: return "residential";
    case RoadClass::service: return "service";
  }
  return {};
}

}  // namespace

ValueMap StreetDescription::members(std::size_t maneuver) const {
  const Road& street = road(maneuvers_[maneuver].after);
  const std::string_view function = functionWord(street.roadClass);
  const std::string_view connected = connection(maneuvers_[maneuver]);
  ValueMap members;
  if (!street.label().empty()) members.set("name", street.label());
  if (!connected.empty()) {
    members.set("dir", connected);
    members.set("connection", connected);
  } else if (const auto direction = compassDirection(maneuver); !direction.empty()) {
    members.set("dir", direction);
  } else {
    members.set("dir", function);
  }
  members.set("func", function);
  if (street.number) {
    members.set("hwy", JSON::makeDictionary({{"number", street.number->number},
                                             {"dir", street.number->family},
                                             {"type", street.number->family}}));
  }
  return members;
}

std::string_view StreetDescription::connection(const Maneuver& maneuver) const {
  if (maneuver.type == Maneuver::Type::depart) return "origin";
  if (maneuver.type == Maneuver::Type::arrive) return "destination";
  if (!road(maneuver.after).link) return {};
  std::size_t first = maneuver.after;
  while (first > 0 && road(first).link)
    --first;
  const bool fromHighway = road(first).isHighway();
  const bool toHighway = leadsToHighway(network_, path_, maneuver.after);
  if (fromHighway && toHighway) return "interchange";
  if (fromHighway) return "offramp";
  return toHighway ? "onramp" : "connector";
}

/// Returns the compass direction from this maneuver to the next on a numbered highway with separate
/// carriageways, otherwise an empty text.
std::string_view StreetDescription::compassDirection(std::size_t maneuver) const {
  const std::size_t first = maneuvers_[maneuver].after;
  const Road& street = road(first);
  if (!street.number || !street.isHighway() || (street.openForward && street.openBackward)) {
    return {};
  }
  const std::size_t last = std::max(first, maneuvers_[maneuver + 1].before);
  const double course = bearing(network_.vertex(network_.startOf(path_.edges[first])).position,
                                network_.vertex(network_.endOf(path_.edges[last])).position);
  constexpr std::array<std::string_view, 4> words{"north", "east", "south", "west"};
  return words[static_cast<std::size_t>(std::lround(course / 90)) % 4];
}

}  // namespace quorvelkit::sandbox
