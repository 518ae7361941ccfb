// SPDX-License-Identifier: Apache-2.0
#include "FieldTable.h"

#include <QuorvelKit/QVRoute.h>

#include <type_traits>

namespace quorvelkit {
namespace {

using test::checkFields;

TEST(QVRouteTest, readsEachMemberOrLeavesItAbsent) {
  checkFields<QVRoute>({
      FIELD(QVRoute, "distance", number, totalDistanceInMiles),
      FIELD(QVRoute, "duration", number, totalDurationInMinutes),
      FIELD(QVRoute, "startNode", integer, startNode),
      FIELD(QVRoute, "endNode", integer, endNode),
  });
  checkFields<QVPoint>({
      FIELD(QVPoint, "notify", text, notify),
      FIELD(QVPoint, "t", number, travelTimeInSeconds),
      FIELD(QVPoint, "d", number, distanceInMiles),
      FIELD(QVPoint, "lat", number, latitude),
      FIELD(QVPoint, "lon", number, longitude),
      FIELD(QVPoint, "say", texts, say),
      FIELD(QVPoint, "edge", integer, edge),
      FIELD(QVPoint, "node", integer, node),
  });
  checkFields<QVTurn>({
      FIELD(QVTurn, "dir", word, direction, ""),
      FIELD(QVTurn, "instruct", text, instruction),
  });
  checkFields<QVStreet>({
      FIELD(QVStreet, "name", text, name),
      FIELD(QVStreet, "dir", word, function, ""),
      FIELD(QVStreet, "dir", word, connection, ""),
      FIELD(QVStreet, "dir", word, direction, ""),
  });
  checkFields<QVHighway>({
      FIELD(QVHighway, "number", integer, number),
      FIELD(QVHighway, "dir", word, direction, ""),
  });
}

TEST(QVRouteTest, readsDirectionsFromTheOneMember) {
  const auto turn = [](const char* text) { return QVTurn(JSON::parse(text)).direction(); };
  EXPECT_EQ(turn(R"({"dir":"uturnleft"})"), QVTurnDirection::uturnleft);
  EXPECT_EQ(turn(R"({"dir":"uTurnLeft"})"), QVTurnDirection::unknown);
  EXPECT_EQ(turn(R"({"dir":"left "})"), QVTurnDirection::unknown);

  const QVStreet ramp(JSON::parse(R"({"dir":"onramp","func":"arterial","connection":"origin"})"));
  EXPECT_EQ(ramp.connection(), QVStreetConnection::onramp);
  EXPECT_EQ(ramp.function(), QVStreetFunction::unknown);
  EXPECT_EQ(ramp.direction(), QVStreetDirection::unknown);

  const QVHighway highway(JSON::parse(R"({"dir":"I","type":"US","number":405})"));
  EXPECT_EQ(highway.direction(), QVHighwayType::interstate);
  EXPECT_EQ(highway.number(), 405);
  const QVHighway none(std::nullopt);
  EXPECT_EQ(none.number(), std::nullopt);
  EXPECT_EQ(none.direction(), QVHighwayType::unknown);
}

TEST(QVRouteTest, buildsAChildUnlessItIsMissingOrNull) {
  struct Row {
    std::string member;
    bool present;
  };
  for (const auto& [member, present] : {Row{"", false}, Row{"null", false}, Row{"{}", true},
                                        Row{"5", true}, Row{R"("x")", true}, Row{"[]", true}}) {
    const auto document = [member = member](const std::string& key) {
      return JSON::parse(member.empty() ? "{}" : "{\"" + key + "\":" + member + "}");
    };
    EXPECT_EQ(QVPoint(document("turn")).turn() != nullptr, present) << member;
    EXPECT_EQ(QVTurn(document("st")).street() != nullptr, present) << member;
    EXPECT_EQ(QVStreet(document("hwy")).highway() != nullptr, present) << member;
  }
}

TEST(QVRouteTest, keepsAllPointsInOrderWhateverTheyAre) {
  for (const char* text :
       {"{}", R"({"points":null})", R"({"points":{"a":1}})", "[]", "7", "null"}) {
    EXPECT_TRUE(QVRoute(JSON::parse(text)).points().empty()) << text;
  }
  const QVRoute route(JSON::parse(
      R"({"points":[{"node":1},{"node":1},null,"x",{"lat":34.1,"turn":
          {"st":{"name":"Fleet Street","hwy":{"number":1}}}},{"lat":1,"lon":2}]})"));
  ASSERT_EQ(route.points().size(), 6U);
  EXPECT_EQ(route.points()[1].node(), 1);
  EXPECT_EQ(route.points()[2].node(), std::nullopt);
  EXPECT_EQ(route.points()[4].location(), Coordinate());
  EXPECT_EQ(route.points()[4].turn()->street()->name(), "Fleet Street");
  EXPECT_EQ(route.points()[4].turn()->street()->highway()->number(), 1);
  EXPECT_EQ(route.points()[5].location(), (Coordinate{1, 2}));
}

// A property that skipped the virtual read would not see the override.
class HalvedPoint : public QVPoint {
 public:
  using QVPoint::QVPoint;
  std::optional<Value> getValue(const KeyView& key) const override {
    if (key == KeyView("lat")) return Value(*QVPoint::getValue(key)->number() / 2);
    return QVPoint::getValue(key);
  }
};

TEST(QVRouteTest, readsThroughOverriddenMembers) {
  const HalvedPoint point(JSON::parse(R"({"lat":10,"lon":2})"));
  EXPECT_EQ(point.latitude(), 5);
  EXPECT_EQ(point.location(), (Coordinate{5, 2}));
}

TEST(QVRouteTest, copiesShareTheDocumentAndOutliveTheOriginal) {
  std::optional<QVRoute> route(
      JSON::parse(R"({"distance":1.5,"points":[{"node":7,"turn":{"instruct":"Go"}}]})"));
  const QVRoute copy = *route;
  const QVPoint point = route->points().front();
  EXPECT_EQ(&copy.points(), &route->points());
  route.reset();
  EXPECT_EQ(copy.totalDistanceInMiles(), 1.5);
  EXPECT_EQ(point.turn()->instruction(), "Go");
  static_assert(sizeof(QVPoint) <= 56);
  static_assert(!std::is_copy_constructible_v<QVBaseObject>);
  static_assert(!std::is_constructible_v<QVRoute, std::optional<JSON>>);
  static_assert(!std::is_constructible_v<QVPoint, std::nullopt_t>);
  static_assert(!std::is_constructible_v<QVTurn, std::optional<JSON>>);
  static_assert(!std::is_constructible_v<QVStreet, std::optional<JSON>>);
}

}  // namespace
}  // namespace quorvelkit
