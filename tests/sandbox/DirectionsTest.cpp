// SPDX-License-Identifier: Apache-2.0
#include "TestMaps.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace quorvelkit::sandbox::test {
namespace {

using testing::ElementsAre;

// Main Street runs north to a crossing. Elm Street leaves it at `bearing`, Oak Street continues Elm
// Street on the other side.
TEST(DirectionsTest, TurnDirectionFollowsFromAngle) {
  const std::pair<double, const char*> cases[] = {
      {10, "forward: Continue onto Elm Street"},
      {40, "slightright: Bear right onto Elm Street"},
      {90, "right: Turn right onto Elm Street"},
      {140, "hardright: Make a sharp right onto Elm Street"},
      {168, "uturnright: Make a U-turn onto Elm Street"},
      {-40, "slightleft: Bear left onto Elm Street"},
      {-90, "left: Turn left onto Elm Street"},
      {-140, "hardleft: Make a sharp left onto Elm Street"},
      {-168, "uturnleft: Make a U-turn onto Elm Street"}};
  for (const auto& [bearing, turn] : cases) {
    const double radians = bearing * std::numbers::pi / 180;
    const double east = std::sin(radians), north = std::cos(radians);
    std::ostringstream streets;
    streets << "Main Street: 0,0 0,2\nElm Street: 0,2 " << 2 * east << ',' << 2 + 2 * north
            << "\nOak Street: 0,2 " << -2 * east << ',' << 2 - 2 * north;
    const JSON route = SketchedMap(streets.str()).route({0, 0.5}, {1.8 * east, 2 + 1.8 * north});
    EXPECT_EQ(turnsOf(route), turn) << bearing;
  }
}

// All routes begin at {0, .5}, on the street that runs north from {0, 0}.
TEST(DirectionsTest, ManeuversAreThoseThatADriverNeeds) {
  const std::tuple<const char*, At, const char*, const char*> cases[] = {
      {"straight over a crossing", {0, 3.5}, "", R"(
          Main Street: 0,0 0,2 0,4
          Elm Street: -1,2 0,2 1,2; highway=primary)"},
      {"bend without another street", {1.5, 2}, "", "Main Street: 0,0 0,2 2,2"},
      {"bend with a service road", {.8, 2.8}, "", R"(
          Main Street: 0,0 0,2 1,3
          : 0,2 0,4; highway=service)"},
      {"same number, another name", {0, 3.5}, "", R"(
          : 0,0 0,2; ref=SR 7
          Mill Road: 0,2 0,4; ref=SR 7
          Elm Street: -1,2 0,2 1,2)"},
      {"another name for some meters", {0, 3.5}, "", R"(
          Main Street: 0,0 0,2
          Bridge: 0,2 0,2.3
          Main Street: 0,2.3 0,4)"},
      {"the street turns, another one is straight on",
       {1.5, 2},
       "right: Turn right to stay on Main Street",
       R"(
          Main Street: 0,0 0,2 2,2
          Elm Street: 0,2 0,4)"},
      {"fork with two other names",
       {-.8, 3.6},
       "leftatthefork: Keep left at the fork onto Elm Street",
       R"(
          Main Street: 0,0 0,2
          Elm Street: 0,2 -1,4
          Oak Street: 0,2 1,4)"},
      {"fork, the street is the other branch",
       {.5, 3.6},
       "slightright: Bear right onto Oak Street",
       R"(
          Main Street: 0,0 0,2 -.6,4
          Oak Street: 0,2 .6,4)"},
      {"turn with one open direction", {1.5, 2}, "right: Turn right onto Main Street", R"(
          : 0,0 0,2
          Main Street: -2,2 0,2 2,2; oneway=yes)"},
      {"turning lane", {2.5, 2}, "right: Turn right onto Elm Street", R"(
          Main Street: 0,0 0,1.5 0,2 0,4; highway=primary
          : 0,1.5 .1,1.8 .5,2; highway=primary_link; oneway=yes
          Elm Street: 0,2 .5,2 3,2; highway=primary)"},
      {"turning lane to a trunk road", {2.5, 2}, "right: Turn right onto Elm Street", R"(
          Main Street: 0,0 0,1.8 0,4; highway=primary
          : 0,1.8 .05,1.95 .2,2; highway=trunk_link; oneway=yes
          Elm Street: -3,2 .2,2 3,2; highway=trunk)"},
      {"U-turn over the median", {-.2, .5}, "uturnleft: Make a U-turn on Main Street", R"(
          Main Street: 0,0 0,2 0,4; highway=primary; oneway=yes
          Main Street: -.2,4 -.2,2 -.2,0; highway=primary; oneway=yes
          Elm Street: 0,2 -.2,2 -2,2)"},
      {"another name right after the turn", {1.5, 2}, "right: Turn right onto Elm Street", R"(
          Main Street: 0,0 0,2 0,4
          Stub;Other: 0,2 .2,2
          Elm Street: .2,2 2,2)"},
      {"island before a roundabout",
       {0, 3.5},
       "forward: At the roundabout, take the first exit onto Oak Street",
       R"(
          Main Street: 0,0 0,2
          Main Street: 0,2 .1,2.2; oneway=yes
          : .1,2.2 .3,2.5 0,2.8 -.3,2.5 .1,2.2; junction=roundabout
          Main Street: -.1,2.2 0,2; oneway=yes
          Elm Street: 0,2 -.35,3
          Oak Street: 0,2.8 0,4)"},
      {"two turns with a named street between",
       {.5, 3.5},
       "right: Turn right onto Elm Street (Then turn left onto Oak Street); "
       "left: Turn left onto Oak Street",
       R"(
          Main Street: 0,0 0,2 0,4
          Elm Street: -2,2 0,2 .5,2
          Oak Street: .5,4 .5,2 .5,0)"},
  };
  for (const auto& [name, to, turns, streets] : cases)
    EXPECT_EQ(turnsOf(SketchedMap(streets).route({0, .5}, to)), turns) << name;
}

// A motorway to the north, with a ramp from Main Street and an exit to Elm Street.
TEST(DirectionsTest, RampMergeAndAnnouncedExitOfAMotorway) {
  const SketchedMap motorway(R"(
      Main Street: -2,-3 0,-3 2,-3; highway=secondary
      : 0,-3 .4,-2 1,0 1,2; highway=motorway_link; oneway=yes
      Bay Freeway: 1,-5 1,2 1,13 1,22; highway=motorway; ref=I 46; oneway=yes
      : 1,13 1.4,14 3,16; highway=motorway_link; oneway=yes
      Elm Street: 1.5,17.5 3,16 4.5,14.5; highway=secondary
      : 1,13; highway=motorway_junction; ref=12B)");
  const JSON route = motorway.route({-1.5, -3}, {4.2, 14.8});
  EXPECT_EQ(turnsOf(route),
            "left: Take the ramp on the left onto I 46; forward: Merge onto I 46; "
            "exitright: Take exit 12B on the right toward Elm Street; "
            "right: Turn right onto Elm Street");
  std::vector<std::string> streets, announced;
  double announcedAt = 0, exitAt = 0;
  for (const JSON& point : route["points"].arrayValue()) {
    const JSON street = point[{"turn", "st"}];
    const std::string text = point["notify"].stringValue();
    if (text.find("exit 12B") != std::string::npos) {
      announced.push_back(text);
      announcedAt = point["d"].doubleValue();
      EXPECT_EQ((point[{"say", 0}].stringValue()), text);
    }
    if (point[{"turn", "dir"}].stringValue() == "exitright") exitAt = point["d"].doubleValue();
    if (!street.exists()) continue;
    streets.push_back(street["dir"].stringValue() + ' ' + street["connection"].stringValue() + ' ' +
                      street[{"hwy", "dir"}].stringValue() +
                      street[{"hwy", "number"}].stringValue());
  }
  EXPECT_THAT(streets, ElementsAre("origin origin ", "onramp onramp ", "north  I46",
                                   "offramp offramp ", "arterial  ", "destination destination "));
  EXPECT_THAT(announced,
              ElementsAre("In half a mile, take exit 12B on the right toward Elm Street"));
  EXPECT_NEAR(exitAt - announcedAt, 0.5, 0.02);
}

TEST(DirectionsTest, RoundaboutExitsAreCounted) {
  const SketchedMap map(R"(
      South Street: 0,-3 0,-.3
      East Street: .3,0 3,0
      North Street: 0,.3 0,3
      West Street: -.3,0 -3,0
      : 0,-.3 .3,0 0,.3 -.3,0 0,-.3; junction=roundabout)");
  const At south{0, -2}, inside{.15, -.15};
  const std::tuple<At, At, const char*> exits[] = {
      {south, {2, 0}, "right: At the roundabout, take the first exit onto East Street"},
      {south, {0, 2}, "forward: At the roundabout, take the second exit onto North Street"},
      {south, {-2, 0}, "left: At the roundabout, take the third exit onto West Street"},
      {inside, {2, 0}, "slightright: At the roundabout, take the first exit onto East Street"},
      {inside, {-2, 0}, "hardleft: At the roundabout, take the third exit onto West Street"},
      {inside, {-.15, .15}, ""}};
  for (const auto& [from, to, turn] : exits)
    EXPECT_EQ(turnsOf(map.route(from, to)), turn);
}

TEST(DirectionsTest, DepartureHasCompassPointAndArrivalHasSide) {
  const SketchedMap map("Main Street: 0,0 0,6");
  const std::tuple<At, At, const char*, const char*> cases[] = {
      {{0, 1}, {.2, 5}, "Head north on Main Street", " on the right"},
      {{0, 5}, {.2, 1}, "Head south on Main Street", " on the left"},
      {{0, 5}, {0, 1}, "Head south on Main Street", ""}};
  for (const auto& [from, to, depart, arrive] : cases) {
    const auto points = map.route(from, to)["points"].arrayValue();
    EXPECT_EQ((points.front()[{"turn", "instruct"}].stringValue()), depart);
    EXPECT_EQ((points.back()[{"turn", "instruct"}].stringValue()),
              std::string("Arrive at your destination") + arrive);
  }
}

}  // namespace
}  // namespace quorvelkit::sandbox::test
