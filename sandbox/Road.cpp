// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Road.h"

#include "sandbox/Geometry.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace quorvelkit::sandbox {
namespace {

struct Kind {
  std::string_view highway;
  RoadClass roadClass;
  bool link;
  double kilometersPerHour;
};

// The speeds are averages; they do not include the wait at traffic lights and turns.
constexpr std::array kinds{
    Kind{"motorway", RoadClass::motorway, false, 100},
    Kind{"motorway_link", RoadClass::motorway, true, 55},
    Kind{"trunk", RoadClass::trunk, false, 80},
    Kind{"trunk_link", RoadClass::trunk, true, 50},
    Kind{"primary", RoadClass::primary, false, 52},
    Kind{"primary_link", RoadClass::primary, true, 40},
    Kind{"secondary", RoadClass::secondary, false, 48},
    Kind{"secondary_link", RoadClass::secondary, true, 36},
    Kind{"tertiary", RoadClass::tertiary, false, 42},
    Kind{"tertiary_link", RoadClass::tertiary, true, 32},
    Kind{"unclassified", RoadClass::residential, false, 38},
    Kind{"road", RoadClass::residential, false, 30},
    Kind{"residential", RoadClass::residential, false, 32},
    Kind{"living_street", RoadClass::service, false, 15},
    Kind{"service", RoadClass::service, false, 22},
};

/// Reads a "maxspeed" tag, such as "50", "55 mph" or "90;30" (the first value counts). Returns
/// kilometers per hour.
std::optional<double> speedLimit(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || !(value >= 5 && value <= 200)) return std::nullopt;
  const std::string_view unit(end, static_cast<std::size_t>(text.data() + text.size() - end));
  return unit == " mph" || unit == "mph" ? value * metersPerMile / 1000 : value;
}

bool isClosed(const Tags& tags) {
  for (const std::string_view key : {"motorcar", "motor_vehicle", "vehicle", "access"}) {
    const std::string_view value = tags[key];
    if (value == "no" || value == "private") return true;
    if (!value.empty()) return false;  // The more specific key decides.
  }
  return tags.is("area", "yes") || tags.is("oneway", "reversible");
}

}  // namespace

std::optional<Road> Road::fromWay(const MapWay& way) {
  const Tags& tags = way.tags;
  const auto* kind = std::find_if(kinds.begin(), kinds.end(), [&](const Kind& candidate) {
    return tags.is("highway", candidate.highway);
  });
  if (kind == kinds.end() || isClosed(tags)) return std::nullopt;

  Road road;
  road.id = way.id;
  road.roadClass = kind->roadClass;
  road.link = kind->link;
  road.roundabout = tags.is("junction", "roundabout") || tags.is("junction", "circular");
  // Semicolons separate several values; the first is the most important one.
  const auto first = [&](std::string_view key) { return tags[key].substr(0, tags[key].find(';')); };
  road.name = first("name");
  road.ref = first("ref");
  road.destination = first("destination");
  road.number = RoadNumber::fromRef(tags["ref"]);

  double kilometersPerHour = kind->kilometersPerHour;
  if (const auto limit = speedLimit(tags["maxspeed"])) {
    // On ramps and service roads, bends limit the speed more than the sign does.
    const bool slow = road.link || road.roadClass == RoadClass::service;
    kilometersPerHour = slow ? std::min(kilometersPerHour, *limit) : *limit * 0.9;
  }
  if (road.roundabout) kilometersPerHour = std::min(kilometersPerHour, 30.0);
  road.speed = kilometersPerHour / 3.6;

  const std::string_view oneway = tags["oneway"];
  const bool impliesOneway =
      road.roundabout || (road.roadClass == RoadClass::motorway && !road.link);
  if (oneway == "-1" || oneway == "reverse") {
    road.openForward = false;
  } else if (oneway == "yes" || oneway == "true" || oneway == "1" ||
             (impliesOneway && oneway != "no")) {
    road.openBackward = false;
  }
  return road;
}

bool Road::isSameStreet(const Road& other) const {
  if (!label().empty() && label() == other.label()) return true;
  if (number && number == other.number) {
    return name.empty() || other.name.empty() || (isHighway() && other.isHighway());
  }
  return label().empty() && other.label().empty() && link == other.link;
}

}  // namespace quorvelkit::sandbox
