// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Instructions.h"

#include "sandbox/Geometry.h"

#include <array>
#include <cmath>

namespace quorvelkit::sandbox {
namespace {

using Manner = Maneuver::Manner;

struct Ahead {
  double miles;
  std::string_view words;
  /// Whether it is for roads where one drives fast, or for all others.
  bool highway;
};

constexpr std::array aheads{
    Ahead{2, "In two miles, ", true},
    Ahead{0.5, "In half a mile, ", true},
    Ahead{0.25, "In a quarter mile, ", false},
    Ahead{500 / 5280.0, "In 500 feet, ", false},
};

/// What is said ahead must not fall together with what was said before.
constexpr double quietMiles = 0.06;
/// A next turn as near as this is told along with the one before it.
constexpr double soonMiles = 0.1;

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

/// The name that stands on the signs: numbers on highways.
std::string_view signName(const Road& road) {
  return road.isHighway() && road.number ? road.ref : road.label();
}

std::string ordinal(int number) {
  constexpr std::array<std::string_view, 6> words{"first",  "second", "third",
                                                  "fourth", "fifth",  "sixth"};
  if (number >= 1 && number <= 6) return std::string(words[static_cast<std::size_t>(number - 1)]);
  return "number " + std::to_string(number);
}

std::string lowered(std::string text) {
  if (!text.empty() && text[0] >= 'A' && text[0] <= 'Z') text[0] = static_cast<char>(text[0] + 32);
  return text;
}

}  // namespace

std::string Instructions::text(const Maneuver& maneuver) const {
  switch (maneuver.manner) {
    case Manner::depart: return departText();
    case Manner::turn: return turnText(maneuver);
    case Manner::proceed: return "Continue" + onto(" onto ", maneuver.after);
    case Manner::exit: return exitText(maneuver);
    case Manner::ramp: {
      const std::string_view side = sideWord(maneuver.direction);
      return "Take the ramp" + (side.empty() ? std::string() : " on the " + std::string(side)) +
             afterRamp(" onto ", maneuver.after);
    }
    case Manner::merge: return "Merge" + onto(" onto ", maneuver.after);
    case Manner::fork: return forkText(maneuver);
    case Manner::roundabout: return roundaboutText(maneuver);
    case Manner::turnBack:
      return "Make a U-turn" +
             onto(road(maneuver.before).isSameStreet(road(maneuver.after)) ? " on " : " onto ",
                  maneuver.after);
    case Manner::arrive:
      if (destination_ == Side::here) return "Arrive at your destination";
      return std::string("Arrive at your destination on the ") +
             (destination_ == Side::left ? "left" : "right");
  }
  return {};
}

std::string Instructions::departText() const {
  const RoadNetwork::EdgeIndex edge = path_.edges.front();
  const std::size_t piece = path_.start.piece;
  const double course = bearing(network_.vertex(network_.shape(edge & ~1U, piece)).position,
                                network_.vertex(network_.shape(edge & ~1U, piece + 1)).position) +
                        (edge % 2 == 0 ? 0 : 180);
  return "Head " + std::string(compassWord(std::fmod(course, 360))) + onto(" on ", 0);
}

std::string Instructions::onto(std::string_view preposition, std::size_t step) const {
  const std::string_view name = signName(road(step));
  return name.empty() ? std::string() : std::string(preposition).append(name);
}

/// What a ramp leads to: what its signs say, else the road behind it.
std::string Instructions::afterRamp(std::string_view preposition, std::size_t step) const {
  for (; step < path_.edges.size(); ++step) {
    const Road& here = road(step);
    if (here.link && !here.destination.empty()) return " toward " + std::string(here.destination);
    if (!here.link) return onto(preposition, step);
  }
  return {};
}

std::string Instructions::exitText(const Maneuver& maneuver) const {
  const auto& vertex = network_.vertex(network_.startOf(path_.edges[maneuver.after]));
  std::string text = "Take ";
  text += vertex.exitNumber.empty() ? "the exit" : "exit " + std::string(vertex.exitNumber);
  text.append(" on the ").append(sideWord(maneuver.direction));
  return text + afterRamp(" toward ", maneuver.after);
}

std::string Instructions::forkText(const Maneuver& maneuver) const {
  std::string text = "Keep " + std::string(sideWord(maneuver.direction)) + " at the fork";
  if (road(maneuver.after).link) return text + afterRamp(" toward ", maneuver.after);
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

void Instructions::announce(RouteLine& line) const {
  for (std::size_t index = 0; index < maneuvers_.size(); ++index) {
    const Maneuver& maneuver = maneuvers_[index];
    const bool last = maneuver.manner == Manner::arrive;
    const std::size_t step = maneuver.manner == Manner::depart ? 0 : maneuver.before + 1;
    RoutePoint& point = last ? line.points().back() : line.stepPoint(step);
    point.maneuver = index;
    point.say = sayAt(line, index);
    if (index > 0) announceAhead(line, index);
  }
}

std::vector<std::string> Instructions::sayAt(const RouteLine& line, std::size_t index) const {
  std::vector<std::string> say{text(maneuvers_[index])};
  if (index + 1 < maneuvers_.size() && index > 0) {
    const Maneuver& next = maneuvers_[index + 1];
    const double meters =
        line.stepMeters()[next.before + 1] - line.stepMeters()[maneuvers_[index].before + 1];
    if (meters < soonMiles * metersPerMile && next.manner != Manner::proceed) {
      say.push_back(next.manner == Manner::arrive ? "Then you will arrive at your destination"
                                                  : "Then " + lowered(text(next)));
    }
  }
  return say;
}

void Instructions::announceAhead(RouteLine& line, std::size_t index) const {
  const Maneuver& maneuver = maneuvers_[index];
  const Maneuver& previous = maneuvers_[index - 1];
  if (maneuver.manner == Manner::proceed || maneuver.manner == Manner::merge) return;
  const double at = line.stepMeters()[maneuver.before + 1];
  const double from =
      previous.manner == Manner::depart ? 0 : line.stepMeters()[previous.before + 1];
  const bool last = maneuver.manner == Manner::arrive;
  double free = (at - from) / metersPerMile - quietMiles;
  for (const Ahead& ahead : aheads) {
    if (ahead.miles > free) continue;
    if (ahead.highway != road(maneuver.before).isHighway()) continue;
    RoutePoint& point = line.pointAt(at - ahead.miles * metersPerMile);
    if (point.maneuver) continue;
    point.notify = std::string(ahead.words) +
                   (last ? "you will arrive at your destination" : lowered(text(maneuver)));
    point.say = {point.notify};
    free = ahead.miles - quietMiles;
  }
}

}  // namespace quorvelkit::sandbox
