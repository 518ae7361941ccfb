// SPDX-License-Identifier: Apache-2.0
#include "SketchedMap.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace quorvelkit::sandbox::test {
namespace {

using testing::ElementsAre;
using Turns = std::vector<std::string>;

// What is said on the way from {0, .5}, where most sketches begin with Main Street to the north.
Turns turnsTo(At to, const SketchedMap& map) { return turnsOf(map.route({0, .5}, to)); }

// Main Street runs north to a crossing; Elm Street leaves it at a bearing, Oak Street opposite.
SketchedMap crossing(double bearing) {
  const double radians = bearing * std::numbers::pi / 180;
  const At end{2 * std::sin(radians), 2 + 2 * std::cos(radians)};
  return SketchedMap()
      .street("Main Street", {{0, 0}, {0, 2}})
      .street("Elm Street", {{0, 2}, end})
      .street("Oak Street", {{0, 2}, {-end.east, end.north == 2 ? 2 : 4 - end.north}});
}

TEST(DirectionsTest, nameTheTurnByItsAngle) {
  const std::vector<std::pair<double, std::string>> cases = {
      {10, "forward: Continue onto Elm Street"},
      {40, "slightright: Bear right onto Elm Street"},
      {90, "right: Turn right onto Elm Street"},
      {140, "hardright: Make a sharp right onto Elm Street"},
      {168, "uturnright: Make a U-turn onto Elm Street"},
      {-40, "slightleft: Bear left onto Elm Street"},
      {-90, "left: Turn left onto Elm Street"},
      {-140, "hardleft: Make a sharp left onto Elm Street"},
      {-168, "uturnleft: Make a U-turn onto Elm Street"},
  };
  for (const auto& [bearing, turn] : cases) {
    const double radians = bearing * std::numbers::pi / 180;
    const At to{1.8 * std::sin(radians), 2 + 1.8 * std::cos(radians)};
    EXPECT_EQ(turnsOf(crossing(bearing).route({0, 0.5}, to)), Turns{turn}) << bearing;
  }
}

TEST(DirectionsTest, areSilentWhereTheWayIsPlain) {
  EXPECT_EQ(
      turnsTo({0, 3.5}, SketchedMap()
                            .street("Main Street", {{0, 0}, {0, 2}, {0, 4}})
                            .street("Elm Street", {{-1, 2}, {0, 2}, {1, 2}}, {"highway=primary"})),
      Turns())
      << "straight over a crossing";
  EXPECT_EQ(turnsTo({1.5, 2}, SketchedMap().street("Main Street", {{0, 0}, {0, 2}, {2, 2}})),
            Turns())
      << "a bend without another way";
  EXPECT_EQ(turnsTo({.8, 2.8}, SketchedMap()
                                   .street("Main Street", {{0, 0}, {0, 2}, {1, 3}})
                                   .street("", {{0, 2}, {0, 4}}, {"highway=service"})),
            Turns())
      << "a bend with a yard";
  EXPECT_EQ(turnsTo({0, 3.5}, SketchedMap()
                                  .street("", {{0, 0}, {0, 2}}, {"ref=SR 7"})
                                  .street("Mill Road", {{0, 2}, {0, 4}}, {"ref=SR 7"})
                                  .street("Elm Street", {{-1, 2}, {0, 2}, {1, 2}})),
            Turns())
      << "the name goes on under a number";
  EXPECT_EQ(turnsTo({0, 3.5}, SketchedMap()
                                  .street("Main Street", {{0, 0}, {0, 2}})
                                  .street("Bridge", {{0, 2}, {0, 2.3}})
                                  .street("Main Street", {{0, 2.3}, {0, 4}})),
            Turns())
      << "a name for a few meters";
}

TEST(DirectionsTest, tellForksAndBendsThatLeaveTheStreet) {
  EXPECT_EQ(turnsTo({1.5, 2}, SketchedMap()
                                  .street("Main Street", {{0, 0}, {0, 2}, {2, 2}})
                                  .street("Elm Street", {{0, 2}, {0, 4}})),
            Turns{"right: Turn right to stay on Main Street"})
      << "the street turns off, another goes straight on";
  EXPECT_EQ(turnsTo({-.8, 3.6}, SketchedMap()
                                    .street("Main Street", {{0, 0}, {0, 2}})
                                    .street("Elm Street", {{0, 2}, {-1, 4}})
                                    .street("Oak Street", {{0, 2}, {1, 4}})),
            Turns{"leftatthefork: Keep left at the fork onto Elm Street"})
      << "two new names";
  EXPECT_EQ(turnsTo({.5, 3.6}, SketchedMap()
                                   .street("Main Street", {{0, 0}, {0, 2}, {-.6, 4}})
                                   .street("Oak Street", {{0, 2}, {.6, 4}})),
            Turns{"slightright: Bear right onto Oak Street"})
      << "the street itself is the other branch";
  EXPECT_EQ(
      turnsTo({1.5, 2}, SketchedMap()
                            .street("", {{0, 0}, {0, 2}})
                            .street("Main Street", {{-2, 2}, {0, 2}, {2, 2}}, {"oneway=yes"})),
      Turns{"right: Turn right onto Main Street"})
      << "a street with one way to go";
}

TEST(DirectionsTest, joinWhatTheMapSplits) {
  const Turns ontoElmStreet{"right: Turn right onto Elm Street"};
  EXPECT_EQ(
      turnsTo({2.5, 2}, SketchedMap()
                            .street("Main Street", {{0, 0}, {0, 2}, {0, 4}}, {"highway=primary"})
                            .street("", {{0, 1.5}, {.1, 1.8}, {.5, 2}},
                                    {"highway=primary_link", "oneway=yes"})
                            .street("Elm Street", {{0, 2}, {.5, 2}, {3, 2}}, {"highway=primary"})),
      ontoElmStreet)
      << "a turning lane";
  EXPECT_EQ(turnsTo({-.2, .5}, SketchedMap()
                                   .street("Main Street", {{0, 0}, {0, 2}, {0, 4}},
                                           {"highway=primary", "oneway=yes"})
                                   .street("Main Street", {{-.2, 4}, {-.2, 2}, {-.2, 0}},
                                           {"highway=primary", "oneway=yes"})
                                   .street("Elm Street", {{0, 2}, {-.2, 2}, {-2, 2}})),
            Turns{"uturnleft: Make a U-turn on Main Street"})
      << "back over the median";
  EXPECT_EQ(turnsTo({1.5, 2}, SketchedMap()
                                  .street("Main Street", {{0, 0}, {0, 2}, {0, 4}})
                                  .street("Stub;Other", {{0, 2}, {.2, 2}})
                                  .street("Elm Street", {{.2, 2}, {2, 2}})),
            ontoElmStreet)
      << "another name right after the turn";
  EXPECT_EQ(
      turnsTo({0, 3.5}, SketchedMap()
                            .street("Main Street", {{0, 0}, {0, 2}})
                            .street("Main Street", {{0, 2}, {.1, 2.2}}, {"oneway=yes"})
                            .street("", {{.1, 2.2}, {.3, 2.5}, {0, 2.8}, {-.3, 2.5}, {.1, 2.2}},
                                    {"junction=roundabout"})
                            .street("Main Street", {{-.1, 2.2}, {0, 2}}, {"oneway=yes"})
                            .street("Elm Street", {{0, 2}, {-.35, 3}})
                            .street("Oak Street", {{0, 2.8}, {0, 4}})),
      Turns{"forward: At the roundabout, take the first exit onto Oak Street"})
      << "the island before a roundabout";
  EXPECT_EQ(turnsTo({.5, 3.5}, SketchedMap()
                                   .street("Main Street", {{0, 0}, {0, 2}, {0, 4}})
                                   .street("Elm Street", {{-2, 2}, {0, 2}, {.5, 2}})
                                   .street("Oak Street", {{.5, 4}, {.5, 2}, {.5, 0}})),
            (Turns{"right: Turn right onto Elm Street", "left: Turn left onto Oak Street"}))
      << "two turns around a named block";
}

// A motorway to the north with an exit that leads to Elm Street, and a ramp from Main Street.
SketchedMap motorway() {
  return SketchedMap()
      .street("Main Street", {{-2, -3}, {0, -3}, {2, -3}}, {"highway=secondary"})
      .street("", {{0, -3}, {.4, -2}, {1, 0}, {1, 2}}, {"highway=motorway_link", "oneway=yes"})
      .street("Bay Freeway", {{1, -5}, {1, 2}, {1, 9}, {1, 18}},
              {"highway=motorway", "ref=I 46", "oneway=yes"})
      .street("", {{1, 9}, {1.4, 10}, {3, 12}}, {"highway=motorway_link", "oneway=yes"})
      .street("Elm Street", {{1.5, 13.5}, {3, 12}, {4.5, 10.5}}, {"highway=secondary"})
      .node({1, 9}, 7, {{"highway", "motorway_junction"}, {"ref", "12B"}});
}

TEST(DirectionsTest, leadOntoTheMotorwayAndOff) {
  const JSON route = motorway().route({-1.5, -3}, {4.2, 10.8});
  EXPECT_THAT(turnsOf(route),
              ElementsAre("left: Take the ramp on the left onto I 46", "forward: Merge onto I 46",
                          "exitright: Take exit 12B on the right toward Elm Street",
                          "right: Turn right onto Elm Street"));
  Turns streets;
  for (const JSON& point : route["points"].arrayValue()) {
    const JSON street = point[{"turn", "st"}];
    if (!street.exists()) continue;
    streets.push_back(street["dir"].stringValue() + ' ' + street["connection"].stringValue() + ' ' +
                      street[{"hwy", "dir"}].stringValue() +
                      street[{"hwy", "number"}].stringValue());
  }
  EXPECT_THAT(streets, ElementsAre("origin origin ", "onramp onramp ", "north  I46",
                                   "offramp offramp ", "arterial  ", "destination destination "));
}

TEST(DirectionsTest, countTheExitsOfARoundabout) {
  const auto around = [](At to) {
    return turnsOf(
        SketchedMap()
            .street("South Street", {{0, -3}, {0, -.3}})
            .street("East Street", {{.3, 0}, {3, 0}})
            .street("North Street", {{0, .3}, {0, 3}})
            .street("West Street", {{-.3, 0}, {-3, 0}})
            .street("", {{0, -.3}, {.3, 0}, {0, .3}, {-.3, 0}, {0, -.3}}, {"junction=roundabout"})
            .route({0, -2}, to));
  };
  EXPECT_EQ(around({2, 0}),
            Turns{"right: At the roundabout, take the first exit onto East Street"});
  EXPECT_EQ(around({0, 2}),
            Turns{"forward: At the roundabout, take the second exit onto North Street"});
  EXPECT_EQ(around({-2, 0}),
            Turns{"left: At the roundabout, take the third exit onto West Street"});
}

TEST(DirectionsTest, departWithACompassPointAndArriveOnASide) {
  const auto ends = [](At from, At to) {
    const auto points = SketchedMap()
                            .street("Main Street", {{0, 0}, {0, 6}})
                            .route(from, to)["points"]
                            .arrayValue();
    return points.front()[{"turn", "instruct"}].stringValue() + "; " +
           points.back()[{"turn", "instruct"}].stringValue();
  };
  EXPECT_EQ(ends({0, 1}, {.2, 5}),
            "Head north on Main Street; Arrive at your destination on the right");
  EXPECT_EQ(ends({0, 5}, {.2, 1}),
            "Head south on Main Street; Arrive at your destination on the left");
  EXPECT_EQ(ends({0, 5}, {0, 1}), "Head south on Main Street; Arrive at your destination");
}

TEST(DirectionsTest, announceAheadWhereItIsDue) {
  const JSON route = motorway().route({1, -4}, {4.2, 10.8});
  double turnAt = -1;
  std::vector<std::pair<std::string, double>> announced;
  for (const JSON& point : route["points"].arrayValue()) {
    const std::string text = point["notify"].stringValue();
    if (text.find("exit 12B") != std::string::npos) {
      announced.emplace_back(text, point["d"].doubleValue());
      EXPECT_EQ((point[{"say", 0}].stringValue()), text);
    }
    if (point[{"turn", "dir"}].stringValue() == "exitright") turnAt = point["d"].doubleValue();
  }
  ASSERT_EQ(announced.size(), 1U);
  EXPECT_EQ(announced[0].first, "In half a mile, take exit 12B on the right toward Elm Street");
  EXPECT_NEAR(turnAt - announced[0].second, 0.5, 0.02);
}

TEST(DirectionsTest, sayTheNextTurnAlongWhenItIsNear) {
  const JSON route = SketchedMap()
                         .street("Main Street", {{0, 0}, {0, 2}, {0, 4}})
                         .street("Elm Street", {{-2, 2}, {0, 2}, {1, 2}})
                         .street("Oak Street", {{1, 4}, {1, 2}, {1, 0}})
                         .route({0, .5}, {1, 3.8});
  for (const JSON& point : route["points"].arrayValue()) {
    if (point[{"turn", "dir"}].stringValue() == "right") {
      EXPECT_EQ((point[{"say", 1}].stringValue()), "Then turn left onto Oak Street");
    }
  }
  EXPECT_THAT(turnsOf(route), testing::SizeIs(2));
}

}  // namespace
}  // namespace quorvelkit::sandbox::test
