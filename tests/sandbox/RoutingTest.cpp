// SPDX-License-Identifier: Apache-2.0
#include "TestMaps.h"

#include <gmock/gmock.h>

namespace quorvelkit::sandbox::test {
namespace {

// A rectangle of streets, one kilometer wide. `upperSide` has tags of the upper side.
SketchedMap block(const std::string& upperSide = "") {
  return SketchedMap("West: 0,0 0,3\nLower: 0,0 10,0\nEast: 10,0 10,3\nUpper: 0,3 10,3;" +
                     upperSide);
}

TEST(RoutingTest, AccessAndOnewayTagsAreObeyed) {
  const std::tuple<bool, bool, std::vector<const char*>> cases[] = {
      {true, true, {"", "access=no; motor_vehicle=yes", "maxspeed=nonsense"}},
      {true, false, {"oneway=yes", "oneway=true", "oneway=1"}},
      {true, false, {"junction=roundabout", "highway=motorway"}},
      {false, true, {"oneway=-1"}},
      {false, false, {"oneway=reversible", "access=private", "motorcar=no"}},
      {false, false, {"highway=footway", "highway=construction"}},
      {false, false, {"maxspeed=5 mph"}}};  // The way around is faster.
  for (const auto& [leadsEast, leadsWest, ways] : cases) {
    for (const char* tags : ways) {
      const SketchedMap map = block(tags);
      const At west{0, 2}, east{10, 2};
      EXPECT_EQ(map.route(west, east)["distance"].doubleValue() < 0.8, leadsEast) << tags;
      EXPECT_EQ(map.route(east, west)["distance"].doubleValue() < 0.8, leadsWest) << tags;
    }
  }
}

TEST(RoutingTest, DistanceAndTimeAreSums) {
  const JSON route = SketchedMap("Main: 0,0 0,5 5,5; maxspeed=40\n: 0,5; highway=traffic_signals")
                         .route({0, 0}, {5, 5});
  EXPECT_NEAR(route["distance"].doubleValue(), 1000 / 1609.344, 1e-3);
  // One kilometer at 90 % of the speed limit, and the traffic light.
  EXPECT_NEAR(route["duration"].doubleValue(), (100 + 7) / 60.0, 0.01);
  double seconds = -1, miles = -1;
  for (const JSON& point : route["points"].arrayValue()) {
    EXPECT_GT(point["t"].doubleValue(), seconds);
    EXPECT_GT(point["d"].doubleValue(), miles);
    seconds = point["t"].doubleValue();
    miles = point["d"].doubleValue();
    EXPECT_EQ(point["edge"].int64(), 4'000'000'001);
    if (point["lat"].doubleValue() > 0.00449 && point["lon"].doubleValue() == 0) {
      EXPECT_EQ(point["node"].int64(), 9'000'000'001);
    }
  }
  EXPECT_NEAR(seconds, route["duration"].doubleValue() * 60, 0.1);
  EXPECT_NEAR(miles, route["distance"].doubleValue(), 1e-4);
  EXPECT_GT(route["startNode"].int64(), std::int64_t{1} << 32);
  EXPECT_NE(route["startNode"].int64(), route["endNode"].int64());
}

TEST(RoutingTest, RouteFollowsTheCourse) {
  // With a course, driving to the end of the street and back costs less than turning back at once.
  const SketchedMap street("Main: 0,0 0,1 0,1.2; oneway=no");
  const QueryParameters north{{"course", "0"}};
  EXPECT_LT(street.route({0, .9}, {0, .1})["distance"].doubleValue(), 0.06);
  const JSON route = street.route({0, .9}, {0, .1}, north);
  EXPECT_GT(route["distance"].doubleValue(), 0.06);
  EXPECT_EQ(turnsOf(route), "uturn: Make a U-turn on Main");
  for (const auto& [course, start] :
       {std::pair("95", "Head east on Lower"), {"265", "Head west on Lower"}}) {
    const JSON around = block().route({5, 0}, {5, 3}, {{"course", course}});
    EXPECT_EQ((around[{"points", 0, "turn", "instruct"}].stringValue()), start);
  }
}

TEST(RoutingTest, SnapsToConnectedRoadsOtherThanMotorways) {
  const SketchedMap map = block("\nIsland: 2,1 3,1\nBay Freeway: 0,.4 10,.4; highway=motorway");
  // The motorway is nearer.
  const JSON route = map.route({5, .3}, {10, 2});
  EXPECT_EQ((route[{"points", 0, "turn", "st", "name"}].stringValue()), "Lower");
  for (const auto& [from, to] :
       {std::pair(At{2.5, 1}, At{10, 2}), {{5, 30}, {10, 2}}, {{5, 0}, {30, 30}}})
    EXPECT_EQ(map.ask(SketchedMap::query(from, to)).status, 404) << from.east;
}

TEST(RoutingTest, RouteWithoutDistanceHasOnePoint) {
  for (const At at : {At{5, 0}, At{0, 0}, At{5, .2}}) {
    const JSON route = block().route(at, at);
    EXPECT_EQ(route["distance"].number(), 0);
    EXPECT_EQ(route["duration"].number(), 0);
    ASSERT_EQ(route["points"].size(), 1U);
    EXPECT_EQ((route[{"points", 0, "turn", "st", "dir"}].stringValue()), "destination");
  }
}

TEST(RoutingTest, WrongParametersAreRefusedWithAMessage) {
  // The end of the message, or null for a correct request; parameters. One without "=" is left out.
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {" is missing", {"startLat", "endLon", "time", "requestType"}},
      {" is not a number", {"startLat=", "startLat=0.0x", "startLat=nan", "speed=fast"}},
      {" is out of range", {"startLat=90.1", "endLon=-1e999", "endLon=inf", "speed=-1"}},
      {" is out of range", {"endLon=180.1", "course=361"}},
      {" must be", {"requestType=departuretime"}},
      {" is not an RFC 3339", {"time=2017-02-29T14:05:00Z", "time=2017-03-01T24:05:00Z"}},
      {" is not an RFC 3339", {"time=2017-03-01T14:05:00", "time=2017-03-01T14:05:00Zz"}},
      {" is not an RFC 3339", {"time=2017-03-01", "time=now"}},
      {nullptr, {"requestType=ArrivalTime", "speed=12.5", "course=360"}},
      {nullptr, {"time=2017-03-01T14:05:00.25+01:00", "time=2017-03-01T14:05:00 01:00"}},
      {nullptr, {"time=2016-02-29t23:59:60z"}}};
  for (const auto& [says, parameters] : cases) {
    for (const std::string& parameter : parameters) {
      const std::size_t equals = parameter.find('=');
      const std::string name = parameter.substr(0, equals);
      QueryParameters query = SketchedMap::query({}, {});
      query.erase(name);
      if (equals != std::string::npos) query.emplace(name, parameter.substr(equals + 1));
      const HTTPAnswer answer = SketchedMap("").ask(query);
      EXPECT_EQ(answer.status, says == nullptr ? 404 : 400) << parameter;
      EXPECT_THAT(JSON::parse(answer.body)["message"].stringValue(),
                  testing::HasSubstr(says == nullptr ? "no road" : name + says));
    }
  }
}

TEST(RoadNumberTest, FamilyAndNumberOfARef) {
  const auto read = [](const char* ref) {
    const auto number = RoadNumber::fromRef(ref);
    return number ? std::string(number->family) + ' ' + std::to_string(number->number) : "none";
  };
  for (const char* ref : {"I 95", "US 40", "CR 12", "CA 1", "SR 9"})
    EXPECT_EQ(read(ref), ref);
  for (const char* ref : {"", "FIXME", "I 99999999999999999999"})
    EXPECT_EQ(read(ref), "none");
  for (const auto& [ref, number] : {std::pair("MD 150", "SR 150"),
                                    {"CG-1", "Hwy 1"},
                                    {"N-260", "Hwy 260"},
                                    {"CO-3101", "Hwy 3101"},
                                    {"55", "Hwy 55"},
                                    {"MD 151;US 40 Truck", "SR 151"},
                                    {"FIXME; N 20", "Hwy 20"},
                                    {"US 40 Truck", "US 40"},
                                    {"CG3i4", "Hwy 3"}})
    EXPECT_EQ(read(ref), number) << ref;
}

}  // namespace
}  // namespace quorvelkit::sandbox::test
