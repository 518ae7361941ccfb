// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Instructions.h"

#include "sandbox/Geometry.h"

#include <array>
#include <cmath>

namespace quorvelkit::sandbox {
namespace {

using Type = Maneuver::Type;

struct Announcement {
  /// The distance before the maneuver.
  double miles;
  std::string_view prefix;
  /// True for highways, false for other roads.
  bool onHighway;
};

constexpr std::array announcements{
    Announcement{2, "In two miles, ", true},
    Announcement{0.5, "In half a mile, ", true},
    Announcement{0.25, "In a quarter mile, ", false},
    Announcement{500 / 5280.0, "In 500 feet, ", false},
};

/// The minimum distance between two spoken texts.
constexpr double minimumGapMiles = 0.06;
/// Two maneuvers nearer than this are spoken together.
constexpr double maximumCombinedMiles = 0.1;

std::string_view compassWord(double course) {
  constexpr std::array<std::string_view, 8> words{"north", "northeast", "east", "southeast",
                                                  "south", "southwest", "west", "northwest"};
  return words[static_cast<std::size_t>(std::lround(course / 45)) % 8];
}

std::string_view sideWord(std::string_view direction) {
  if (direction.find("left") != std::string_view::npos) return "left";
  if (direction.find("right") != std::string_view::npos) return "right";
  return {};
}

/// The name on road signs: the number for a numbered highway, otherwise the label.
std::string_view signName(const Road& road) {
  return road.isHighway() && road.number ? road.ref : road.label();
}

std::string ordinal(int number) {
  constexpr std::array<std::string_view, 6> words{"first",  "second", "third",
                                                  "fourth", "fifth",  "sixth"};
  if (number >= 1 && number <= 6) return std::string(words[static_cast<std::size_t>(number - 1)]);
  return "number " + std::to_string(number);
}

std::string withLowercaseInitial(std::string text) {
  if (!text.empty() && text[0] >= 'A' && text[0] <= 'Z') text[0] = static_cast<char>(text[0] + 32);
  return text;
}

}  // namespace

std::string Instructions::text(const Maneuver& maneuver) const {
  switch (maneuver.type) {
    case Type::depart: return departText();
    case Type::turn: return turnText(maneuver);
    case Type::nameChange: return "Continue" + onto(" onto ", maneuver.after);
    case Type::exit: return exitText(maneuver);
    case Type::ramp: {
      const std::string_view side = sideWord(maneuver.direction);
      return "Take the ramp" + (side.empty() ? std::string() : " on the " + std::string(side)) +
             rampDestination(" onto ", maneuver.after);
    }
    case Type::merge: return "Merge" + onto(" onto ", maneuver.after);
    case Type::fork: return forkText(maneuver);
    case Type::roundabout: return roundaboutText(maneuver);
    case Type::uTurn:
      return "Make a U-turn" +
             onto(road(maneuver.before).isSameStreet(road(maneuver.after)) ? " on " : " onto ",
                  maneuver.after);
    case Type::arrive:
      if (destination_ == Side::onRoad) return "Arrive at your destination";
      return std::string("Arrive at your destination on the ") +
             (destination_ == Side::left ? "left" : "right");
  }
  return {};
}

std::string Instructions::departText() const {
  const RoadNetwork::EdgeIndex edge = path_.edges.front();
  const std::size_t segment = path_.start.segment;
  const double course = bearing(network_.vertex(network_.shape(edge & ~1U, segment)).position,
                                network_.vertex(network_.shape(edge & ~1U, segment + 1)).position) +
                        (edge % 2 == 0 ? 0 : 180);
  return "Head " + std::string(compassWord(std::fmod(course, 360))) + onto(" on ", 0);
}

std::string Instructions::onto(std::string_view preposition, std::size_t step) const {
  const std::string_view name = signName(road(step));
  return name.empty() ? std::string() : std::string(preposition).append(name);
}

/// Returns the destination on the signs of the ramp, or else the road after the ramp.
std::string Instructions::rampDestination(std::string_view preposition, std::size_t step) const {
  for (; step < path_.edges.size(); ++step) {
    const Road& current = road(step);
    if (current.link && !current.destination.empty())
      return " toward " + std::string(current.destination);
    if (!current.link) return onto(preposition, step);
  }
  return {};
}

std::string Instructions::exitText(const Maneuver& maneuver) const {
  const auto& vertex = network_.vertex(network_.startOf(path_.edges[maneuver.after]));
  std::string text = "Take ";
  text += vertex.exitNumber.empty() ? "the exit" : "exit " + std::string(vertex.exitNumber);
  text.append(" on the ").append(sideWord(maneuver.direction));
  return text + rampDestination(" toward ", maneuver.after);
}

std::string Instructions::forkText(const Maneuver& maneuver) const {
  std::string text = "Keep " + std::string(sideWord(maneuver.direction)) + " at the fork";
  if (road(maneuver.after).link) return text + rampDestination(" toward ", maneuver.after);
  return text + onto(" onto ", maneuver.after);
}

std::string Instructions::turnText(const Maneuver& maneuver) const {
  const std::string_view direction = maneuver.direction;
  const std::string side(sideWord(direction));
  const bool same = road(maneuver.before).isSameStreet(road(maneuver.after));
  std::string text;
  if (side.empty()) {
    text = "Continue";
  } else if (direction.starts_with("slight")) {
    text = "Bear " + side;
  } else if (direction.starts_with("hard")) {
    text = "Make a sharp " + side;
  } else if (direction.starts_with("uturn")) {
    text = "Make a U-turn to the " + side;
  } else {
    text = "Turn " + side;
  }
  return text + onto(same ? " to stay on " : " onto ", maneuver.after);
}

std::string Instructions::roundaboutText(const Maneuver& maneuver) const {
  if (maneuver.roundaboutExit == 0) return "Enter the roundabout";
  return "At the roundabout, take the " + ordinal(maneuver.roundaboutExit) + " exit" +
         onto(" onto ", maneuver.after);
}

void Instructions::addTo(RouteLine& line) const {
  for (std::size_t index = 0; index < maneuvers_.size(); ++index) {
    const Maneuver& maneuver = maneuvers_[index];
    const bool last = maneuver.type == Type::arrive;
    const std::size_t step = maneuver.type == Type::depart ? 0 : maneuver.before + 1;
    RoutePoint& point = last ? line.points().back() : line.stepPoint(step);
    point.maneuver = index;
    point.say = spokenTexts(line, index);
    if (index > 0) addAnnouncements(line, index);
  }
}

std::vector<std::string> Instructions::spokenTexts(const RouteLine& line, std::size_t index) const {
  std::vector<std::string> say{text(maneuvers_[index])};
  if (index + 1 < maneuvers_.size() && index > 0) {
    const Maneuver& next = maneuvers_[index + 1];
    const double meters =
        line.stepMeters()[next.before + 1] - line.stepMeters()[maneuvers_[index].before + 1];
    if (meters < maximumCombinedMiles * metersPerMile && next.type != Type::nameChange) {
      say.push_back(next.type == Type::arrive ? "Then you will arrive at your destination"
                                              : "Then " + withLowercaseInitial(text(next)));
    }
  }
  return say;
}

void Instructions::addAnnouncements(RouteLine& line, std::size_t index) const {
  const Maneuver& maneuver = maneuvers_[index];
  const Maneuver& previous = maneuvers_[index - 1];
  if (maneuver.type == Type::nameChange || maneuver.type == Type::merge) return;
  const double at = line.stepMeters()[maneuver.before + 1];
  const double from = previous.type == Type::depart ? 0 : line.stepMeters()[previous.before + 1];
  const bool last = maneuver.type == Type::arrive;
  double freeMiles = (at - from) / metersPerMile - minimumGapMiles;
  for (const Announcement& announcement : announcements) {
    if (announcement.miles > freeMiles) continue;
    if (announcement.onHighway != road(maneuver.before).isHighway()) continue;
    RoutePoint& point = line.pointAt(at - announcement.miles * metersPerMile);
    if (point.maneuver) continue;
    point.notify = std::string(announcement.prefix) + (last ? "you will arrive at your destination"
                                                            : withLowercaseInitial(text(maneuver)));
    point.say = {point.notify};
    freeMiles = announcement.miles - minimumGapMiles;
  }
}

}  // namespace quorvelkit::sandbox
