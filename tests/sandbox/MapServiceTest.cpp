// SPDX-License-Identifier: Apache-2.0
#include "sandbox/MapService.h"
#include "sandbox/MapStyle.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace quorvelkit::sandbox {

namespace {

constexpr const char* sampleMap = R"({"type":"FeatureCollection","features":[
  {"type":"Feature","geometry":{"type":"LineString","coordinates":[[10.5,48.25],[10.75,48.25]]},
   "properties":{"highway":"trunk_link"}},
  {"type":"Feature","geometry":{"type":"LineString","coordinates":[[10,48],[11,48]]},
   "properties":{"highway":"residential"}},
  {"type":"Feature","geometry":{"type":"LineString","coordinates":[[10,48],[11,48]]},
   "properties":{"highway":"proposed"}},
  {"type":"Feature","geometry":{"type":"LineString","coordinates":[[10,47],[11,47]]},
   "properties":{"waterway":"river"}},
  {"type":"Feature","geometry":{"type":"Polygon","coordinates":
     [[[0,0],[9,0],[9,9],[0,0]],[[1,1],[2,1],[2,2],[1,1]]]},"properties":{"natural":"water"}},
  {"type":"Feature","geometry":{"type":"Polygon","coordinates":[[[0,0],[1,0],[1,1],[0,0]]]},
   "properties":{"leisure":"park"}}]})";

JSON get(const MapService& service, const std::string& path) {
  const auto answer = service.answer({"GET", path, {}, "", nullptr}, "http://127.0.0.1:1");
  EXPECT_TRUE(answer && answer->status == 200) << path;
  return answer ? JSON::parse(answer->body) : JSON();
}

std::shared_ptr<const MapData> mapOf(const char* text) {
  std::string problem;
  return MapData::fromGeoJSON(text, problem);
}

TEST(MapServiceTest, FeaturesAreStreetsWaterOrLand) {
  const MapService service(mapOf(sampleMap));
  const JSON streets = get(service, "/streets.geojson");
  EXPECT_EQ(streets["type"].stringValue(), "FeatureCollection");
  ASSERT_EQ(streets["features"].size(), 2U);
  const JSON link = streets[{"features", 0}];
  EXPECT_EQ((link[{"properties", "class"}].stringValue()), "motorway");
  EXPECT_EQ((link[{"geometry", "type"}].stringValue()), "LineString");
  EXPECT_EQ((link[{"geometry", "coordinates", 1}]), JSON::parse("[10.75,48.25]"));
  EXPECT_EQ((streets[{"features", 1, "properties", "class"}].stringValue()), "minor");

  const JSON water = get(service, "/water.geojson");
  ASSERT_EQ(water["features"].size(), 2U);
  EXPECT_EQ((water[{"features", 0, "geometry", "coordinates"}]),
            JSON::parse("[[[0,0],[9,0],[9,9],[0,0]],[[1,1],[2,1],[2,2],[1,1]]]"));
  EXPECT_EQ((water[{"features", 1, "geometry", "type"}].stringValue()), "LineString");
  const JSON land = get(service, "/land.geojson");
  ASSERT_EQ(land["features"].size(), 1U);
  EXPECT_EQ((land[{"features", 0, "properties", "class"}].stringValue()), "park");
}

// An error in a style makes the engine leave out layers without a message.
TEST(MapServiceTest, StyleIsCompleteAndRefersToThisServerOnly) {
  const MapService service(mapOf(sampleMap));
  const JSON style = get(service, "/style.json");
  EXPECT_EQ(style["version"].intValue(), 8);
  EXPECT_FALSE(style["glyphs"].exists() || style["sprite"].exists());
  const std::string root = "http://127.0.0.1:1";
  for (const auto& [name, source] : style["sources"]) {
    const std::string url = source["data"].stringValue();
    ASSERT_EQ(url.substr(0, root.size()), root);
    EXPECT_GT(get(service, url.substr(root.size()))["features"].size(), 0U) << url;
    EXPECT_NE(source["attribution"].stringValue().find("OpenStreetMap"), std::string::npos);
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
}

TEST(MapServiceTest, RequestsForOtherServicesHaveNoAnswer) {
  const MapService service(MapData::builtInTown());
  EXPECT_EQ((get(service, "/style.json")[{"sources", "water", "attribution"}].stringValue()),
            "Quorvel, an invented town");
  for (const auto& [method, path] : {std::pair("POST", "/style.json"), {"GET", "/v4/route"}})
    EXPECT_FALSE(service.answer({method, path, {}, "", nullptr}, ""));
}

}  // namespace

}  // namespace quorvelkit::sandbox
