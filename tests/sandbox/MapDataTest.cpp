// SPDX-License-Identifier: Apache-2.0
#include "sandbox/MapData.h"

#include <gmock/gmock.h>

namespace quorvelkit::sandbox {
namespace {

std::shared_ptr<const MapData> readFeatures(const std::string& features) {
  std::string problem;
  auto map = MapData::fromGeoJSON(R"({"type":"FeatureCollection","features":[)" + features + "]}",
                                  problem);
  EXPECT_EQ(problem, "");
  return map;
}

std::string feature(const std::string& id, const std::string& type,
                    const std::string& coordinates) {
  return R"({"type":"Feature","id":)" + id + R"(,"properties":{"name":"x"},"geometry":{"type":")" +
         type + R"(","coordinates":)" + coordinates + "}}";
}

TEST(MapDataTest, ReadsAllGeometryTypes) {
  const std::string ring = "[[0,0],[0,1],[1,1],[0,0]]";
  const auto map =
      readFeatures(feature("\"n9000000000\"", "Point", "[1.5,2.5]") + "," +
                   feature("\"w2\"", "LineString", "[[1,2],[3,4,99]]") + "," +
                   feature("\"w3\"", "MultiLineString", "[[[1,2],[3,4]],[[5,6],[7,8]]]") + "," +
                   feature("\"a8\"", "Polygon", "[" + ring + "," + ring + "]") + "," +
                   feature("\"a9\"", "MultiPolygon", "[[" + ring + "],[" + ring + "]]"));
  ASSERT_EQ(map->nodes.size(), 1U);
  EXPECT_EQ(map->nodes[0].id, 9'000'000'000);
  EXPECT_EQ(map->nodes[0].position, (Coordinate{2.5, 1.5}));
  EXPECT_EQ(map->nodes[0].tags["name"], "x");
  ASSERT_EQ(map->ways.size(), 3U);
  EXPECT_EQ(map->ways[0].line, (std::vector<Coordinate>{{2, 1}, {4, 3}}));
  EXPECT_EQ(map->ways[2].id, 3);
  ASSERT_EQ(map->areas.size(), 2U);
  EXPECT_EQ(map->areas[0].id, 4);
  EXPECT_TRUE(map->areas[0].fromWay);
  EXPECT_EQ(map->areas[0].polygons[0].size(), 2U);
  EXPECT_FALSE(map->areas[1].fromWay);
  EXPECT_EQ(map->areas[1].polygons.size(), 2U);
}

TEST(MapDataTest, ReadsAllIdFormats) {
  const auto idOf = [](const std::string& id) {
    return readFeatures(feature(id, "LineString", "[[1,2],[3,4]]"))->ways[0].id;
  };
  for (const char* id : {"\"w12\"", "\"way/12\"", "12", "\"12\""})
    EXPECT_EQ(idOf(id), 12) << id;
  for (const char* id : {"\"w\"", "null", "\"w99999999999999999999\""})
    EXPECT_EQ(idOf(id), -1) << id;
}

TEST(MapDataTest, TextsAndNumbersBecomeTags) {
  const auto map = readFeatures(
      R"({"properties":{"name":"Rua \u00e9","maxspeed":50,"@id":"w1","oneway":true,"x":null},)"
      R"("geometry":{"type":"Point","coordinates":[1,2]}})");
  EXPECT_EQ(map->nodes[0].tags.pairs(),
            (std::vector<Tags::Pair>{{"name", "Rua é"}, {"maxspeed", "50"}}));
}

TEST(MapDataTest, SkipsFeaturesWithoutUsableGeometry) {
  const auto map = readFeatures(
      feature("1", "LineString", "[[1,2]]") + "," + feature("1", "LineString", "[[1,2],[3]]") +
      "," + feature("1", "LineString", R"([[1,2],["3",4]])") + "," +
      feature("1", "Point", "[1,91]") + "," + feature("1", "Polygon", "[[[0,0],[1,1]]]") + "," +
      feature("1", "Circle", "[1,2]") + R"(,{"geometry":null},{},7,null)");
  EXPECT_TRUE(map->ways.empty() && map->nodes.empty() && map->areas.empty());
}

TEST(MapDataTest, ReportsWhyADocumentIsInvalid) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "no JSON"},
      {R"({"type":"FeatureCollection","features":[)", "no JSON"},
      {"[]", "FeatureCollection"},
      {R"({"type":"Feature"})", "FeatureCollection"},
      {R"({"type":"FeatureCollection","features":{}})", "FeatureCollection"}};
  for (const auto& [text, reason] : cases) {
    std::string problem;
    EXPECT_EQ(MapData::fromGeoJSON(text, problem), nullptr);
    EXPECT_THAT(problem, testing::HasSubstr(reason)) << text;
  }
  std::string problem;
  EXPECT_EQ(MapData::fromFile("/nowhere/map.geojson", problem), nullptr);
  EXPECT_THAT(problem, testing::HasSubstr("cannot be read"));
}

}  // namespace
}  // namespace quorvelkit::sandbox
