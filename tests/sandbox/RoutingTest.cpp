// SPDX-License-Identifier: Apache-2.0
#include "SketchedMap.h"

#include <gmock/gmock.h>

namespace quorvelkit::sandbox::test {
namespace {

// A block one kilometer wide: the upper side may be closed or one way.
SketchedMap block(std::vector<std::string> upperSide) {
  return SketchedMap()
      .street("West", {{0, 0}, {0, 3}})
      .street("Lower", {{0, 0}, {10, 0}})
      .street("East", {{10, 0}, {10, 3}})
      .street("Upper", {{0, 3}, {10, 3}}, std::move(upperSide));
}

TEST(RoutingTest, obeysTheTagsOfAWay) {
  struct Case {
    std::vector<std::string> tags;
    bool isOpen;
  };
  const std::vector<Case> cases = {
      {{}, true},
      {{"oneway=yes"}, true},
      {{"oneway=-1"}, false},
      {{"junction=roundabout"}, true},
      {{"highway=motorway"}, true},
      {{"access=private"}, false},
      {{"access=no", "motor_vehicle=yes"}, true},
      {{"motorcar=no"}, false},
      {{"highway=footway"}, false},
      {{"highway=construction"}, false},
      {{"oneway=reversible"}, false},
      {{"maxspeed=5 mph"}, false},  // Open, but the way around is faster.
      {{"maxspeed=nonsense"}, true},
  };
  for (const Case& c : cases) {
    const JSON route = block(c.tags).route({0, 2}, {10, 2});
    EXPECT_EQ(route["distance"].doubleValue() < 0.8, c.isOpen) << testing::PrintToString(c.tags);
  }
  // The other way round a one-way street is closed.
  for (const char* tag : {"oneway=yes", "oneway=true", "oneway=1", "highway=motorway"}) {
    EXPECT_GT(block({tag}).route({10, 2}, {0, 2})["distance"].doubleValue(), 0.8) << tag;
  }
  EXPECT_LT(block({"oneway=-1"}).route({10, 2}, {0, 2})["distance"].doubleValue(), 0.8);
}

TEST(RoutingTest, addsUpDistanceAndTime) {
  const JSON route = SketchedMap()
                         .street("Main", {{0, 0}, {0, 5}, {5, 5}}, {"maxspeed=40"})
                         .node({0, 5}, 9'000'000'001, {{"highway", "traffic_signals"}})
                         .route({0, 0}, {5, 5});
  EXPECT_NEAR(route["distance"].doubleValue(), 1000 / 1609.344, 1e-3);
  // A kilometer at nine tenths of the limit, and the light.
  EXPECT_NEAR(route["duration"].doubleValue(), (100 + 7) / 60.0, 0.01);
  double seconds = -1;
  double miles = -1;
  for (const JSON& point : route["points"].arrayValue()) {
    EXPECT_GT(point["t"].doubleValue(), seconds);
    EXPECT_GT(point["d"].doubleValue(), miles);
    seconds = point["t"].doubleValue();
    miles = point["d"].doubleValue();
    EXPECT_EQ(point["edge"].int64(), 4'000'000'000);
    if (point["lat"].doubleValue() > 0.00449 && point["lon"].doubleValue() == 0) {
      EXPECT_EQ(point["node"].int64(), 9'000'000'001);
    }
  }
  EXPECT_NEAR(seconds, route["duration"].doubleValue() * 60, 0.1);
  EXPECT_NEAR(miles, route["distance"].doubleValue(), 1e-4);
  EXPECT_GT(route["startNode"].int64(), std::int64_t{1} << 32);
  EXPECT_NE(route["startNode"].int64(), route["endNode"].int64());
}

TEST(RoutingTest, turnsBackOnlyAtAPrice) {
  // To the end of the street and back takes less than turning on the spot.
  const SketchedMap street =
      SketchedMap().street("Main", {{0, 0}, {0, 1}, {0, 1.2}}, {"oneway=no"});
  const QueryParameters north{{"course", "0"}};
  EXPECT_LT(street.route({0, .9}, {0, .1})["distance"].doubleValue(), 0.06);
  const JSON route = street.route({0, .9}, {0, .1}, north);
  EXPECT_GT(route["distance"].doubleValue(), 0.06);
  EXPECT_THAT(turnsOf(route), testing::ElementsAre("uturn: Make a U-turn on Main"));
}

TEST(RoutingTest, startsTheWayTheVehicleIsHeading) {
  const SketchedMap map = block({});
  const auto instruction = [&](const QueryParameters& more) {
    return map.route({5, 0}, {5, 3}, more)[{"points", 0, "turn", "instruct"}].stringValue();
  };
  EXPECT_EQ(instruction({{"course", "95"}}), "Head east on Lower");
  EXPECT_EQ(instruction({{"course", "265"}, {"speed", "20"}}), "Head west on Lower");
}

TEST(RoutingTest, snapsToRoadsThatLeadSomewhere) {
  const SketchedMap map = block({})
                              .street("Island", {{2, 1}, {3, 1}})
                              .street("Bay Freeway", {{0, .4}, {10, .4}}, {"highway=motorway"});
  // The motorway is nearer, but nobody starts from beside it.
  const JSON route = map.route({5, .3}, {10, 2});
  EXPECT_EQ((route[{"points", 0, "turn", "st", "name"}].stringValue()), "Lower");
  EXPECT_EQ(map.ask({2.5, 1}, {10, 2}).status, 404);
  EXPECT_EQ(map.ask({5, 30}, {10, 2}).status, 404);
  EXPECT_EQ(map.ask({5, 0}, {30, 30}).status, 404);
  EXPECT_FALSE(map.route({2.5, 1}, {10, 2})["message"].stringValue().empty());
}

TEST(RoutingTest, fromAPlaceToItself) {
  for (const At at : {At{5, 0}, At{0, 0}, At{5, .2}}) {
    const JSON route = block({}).route(at, at);
    EXPECT_EQ(route["distance"].number(), 0);
    EXPECT_EQ(route["duration"].number(), 0);
    ASSERT_EQ(route["points"].size(), 1U);
    EXPECT_EQ((route[{"points", 0, "turn", "st", "dir"}].stringValue()), "destination");
  }
}

TEST(RoutingTest, refusesWrongParameters) {
  struct Case {
    const char* name;
    const char* value;  // Null: the parameter is missing.
    const char* says;   // Null: it is accepted.
  };
  const std::vector<Case> cases = {
      {"startLat", nullptr, "startLat is missing"},
      {"endLon", nullptr, "endLon is missing"},
      {"time", nullptr, "time is missing"},
      {"requestType", nullptr, "requestType is missing"},
      {"startLat", "", "startLat is no number"},
      {"startLat", "0.0x", "startLat is no number"},
      {"startLat", "nan", "startLat is no number"},
      {"startLat", "90.1", "startLat is out of range"},
      {"endLon", "-1e999", "endLon is out of range"},
      {"endLon", "inf", "endLon is out of range"},
      {"requestType", "departuretime", "requestType is neither"},
      {"requestType", "ArrivalTime", nullptr},
      {"speed", "fast", "speed is no number"},
      {"speed", "-1", "speed is out of range"},
      {"speed", "12.5", nullptr},
      {"course", "361", "course is out of range"},
      {"course", "360", nullptr},
      {"time", "2017-03-01T14:05:00.25+01:00", nullptr},
      {"time", "2017-03-01T14:05:00 01:00", nullptr},
      {"time", "2016-02-29t23:59:60z", nullptr},
      {"time", "2017-02-29T14:05:00Z", "time is no RFC 3339"},
      {"time", "2017-03-01T24:05:00Z", "time is no RFC 3339"},
      {"time", "2017-03-01T14:05:00", "time is no RFC 3339"},
      {"time", "2017-03-01T14:05:00Zz", "time is no RFC 3339"},
      {"time", "2017-03-01", "time is no RFC 3339"},
      {"time", "now", "time is no RFC 3339"},
  };
  const RouteService service(std::make_shared<MapData>());
  for (const Case& c : cases) {
    QueryParameters parameters{{"startLat", "1"},
                               {"startLon", "1"},
                               {"endLat", "1"},
                               {"endLon", "1"},
                               {"time", "2017-03-01T14:05:00Z"},
                               {"requestType", "DepartureTime"}};
    parameters.erase(c.name);
    if (c.value != nullptr) parameters.emplace(c.name, c.value);
    const auto answer = service.answer({"GET", "/v4/route", parameters, "", nullptr});
    EXPECT_EQ(answer->status, c.says == nullptr ? 404 : 400) << c.name << '=' << c.value;
    const std::string message = JSON::parse(answer->body)["message"].stringValue();
    EXPECT_THAT(message, testing::HasSubstr(c.says == nullptr ? "no road" : c.says));
  }
}

TEST(RoadNumberTest, readsRefs) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"I 95", "I 95"},
      {"US 40", "US 40"},
      {"MD 150", "SR 150"},
      {"CR 12", "CR 12"},
      {"CA 1", "CA 1"},
      {"SR 9", "SR 9"},
      {"CG-1", "Hwy 1"},
      {"N-260", "Hwy 260"},
      {"CO-3101", "Hwy 3101"},
      {"A1", "Hwy 1"},
      {"55", "Hwy 55"},
      {"MD 151;US 40 Truck", "SR 151"},
      {"FIXME; N 20", "Hwy 20"},
      {"US 40 Truck", "US 40"},
      {"CG3i4", "Hwy 3"},
      {"", ""},
      {"FIXME", ""},
      {"I 99999999999999999999", ""},
  };
  for (const auto& [ref, expected] : cases) {
    const auto number = RoadNumber::fromRef(ref);
    EXPECT_EQ(number ? std::string(number->family) + ' ' + std::to_string(number->number) : "",
              expected)
        << ref;
  }
}

}  // namespace
}  // namespace quorvelkit::sandbox::test
