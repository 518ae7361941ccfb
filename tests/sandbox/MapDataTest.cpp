// SPDX-License-Identifier: Apache-2.0
#include "sandbox/MapService.h"
#include "sandbox/MapStyle.h"

#include <gmock/gmock.h>

#include <set>
#include <string>

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

JSON get(const MapService& service, const std::string& path) {
  const auto answer = service.answer({"GET", path, {}, "", nullptr}, "http://127.0.0.1:1");
  EXPECT_TRUE(answer && answer->status == 200) << path;
  return answer ? JSON::parse(answer->body) : JSON();
}

// Each feature is in the answer to one path only.
TEST(MapServiceTest, FeaturesAreStreetsWaterOrLand) {
  const std::string line = R"({"type":"LineString","coordinates":[[10.5,48.25],[10.75,48.25]]})";
  const std::string area = R"({"type":"Polygon","coordinates":
      [[[0,0],[9,0],[9,9],[0,0]],[[1,1],[2,1],[2,2],[1,1]]]})";
  // Geometry, tags, path and properties of the answer.
  const std::tuple<std::string, const char*, std::string, const char*> cases[] = {
      {line, R"({"highway":"trunk_link"})", "/streets.geojson", R"({"class":"motorway"})"},
      {line, R"({"highway":"residential"})", "/streets.geojson", R"({"class":"minor"})"},
      {line, R"({"highway":"proposed"})", "", ""},
      {line, R"({"waterway":"river"})", "/water.geojson", "{}"},
      {area, R"({"natural":"water"})", "/water.geojson", "{}"},
      {area, R"({"leisure":"park"})", "/land.geojson", R"({"class":"park"})"}};
  const auto featureOf = [](const std::string& geometry, const std::string& properties) {
    return R"({"type":"Feature","properties":)" + properties + R"(,"geometry":)" + geometry + "}";
  };
  for (const auto& [geometry, tags, place, properties] : cases) {
    const MapService service(readFeatures(featureOf(geometry, tags)));
    for (const std::string path : {"/streets.geojson", "/water.geojson", "/land.geojson"}) {
      EXPECT_EQ(get(service, path)["features"],
                JSON::parse('[' + (path == place ? featureOf(geometry, properties) : "") + ']'))
          << path << tags;
    }
    EXPECT_THAT((get(service, "/style.json")[{"sources", "water", "attribution"}].stringValue()),
                testing::HasSubstr("OpenStreetMap"));
  }
}

// An error in a style makes the engine leave out layers without a message.
TEST(MapServiceTest, StyleIsCompleteAndRefersToThisServerOnly) {
  const MapService service(MapData::builtInTown());
  const JSON style = get(service, "/style.json");
  EXPECT_EQ(style["version"].intValue(), 8);
  EXPECT_FALSE(style["glyphs"].exists() || style["sprite"].exists());
  const std::string root = "http://127.0.0.1:1";
  for (const auto& [name, source] : style["sources"]) {
    const std::string url = source["data"].stringValue();
    ASSERT_EQ(url.substr(0, root.size()), root);
    EXPECT_GT(get(service, url.substr(root.size()))["features"].size(), 0U) << url;
    EXPECT_EQ(source["attribution"].stringValue(), "Quorvel, an invented town");
  }
  std::set<std::string> ids;
  std::set<std::string> drawn;
  for (const auto& [position, layer] : style["layers"]) {
    EXPECT_TRUE(ids.insert(layer["id"].stringValue()).second) << layer["id"].stringValue();
    EXPECT_NE(layer["type"].stringValue(), "symbol");
    if (layer["type"].stringValue() == "background") continue;
    EXPECT_TRUE((style[{"sources", layer["source"].stringValue()}].exists()));
    if ((layer[{"filter", 1}].stringValue()) == "class")
      drawn.insert((layer[{"filter", 2}].stringValue()));
  }
  for (const char* const highway : {"motorway", "trunk", "primary_link", "tertiary", "road",
                                    "living_street", "service", "steps"}) {
    const Tags tags(std::vector<Tags::Pair>{{"highway", highway}});
    EXPECT_EQ(drawn.count(std::string(streetClass(tags))), 1U) << highway;
  }
  for (const auto& [key, value] : {std::pair("leisure", "garden"),
                                   {"natural", "wood"},
                                   {"natural", "beach"},
                                   {"landuse", "industrial"}}) {
    const Tags tags(std::vector<Tags::Pair>{{key, value}});
    EXPECT_EQ(drawn.count(std::string(landClass(tags))), 1U) << value;
  }
  for (const auto& [method, path] : {std::pair("POST", "/style.json"), {"GET", "/v4/route"}})
    EXPECT_FALSE(service.answer({method, path, {}, "", nullptr}, ""));
}

}  // namespace
}  // namespace quorvelkit::sandbox
