// SPDX-License-Identifier: Apache-2.0
#include "sandbox/MapService.h"
#include "sandbox/MapStyle.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
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

std::string body(const MapService& service, const std::string& path, int status = 200) {
  const auto answer = service.answer({"GET", path, {}, "", nullptr}, "http://127.0.0.1:1");
  EXPECT_TRUE(answer && answer->status == status) << path;
  return answer ? answer->body : "";
}

JSON get(const MapService& service, const std::string& path) {
  return JSON::parse(body(service, path));
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
  const std::string root = "http://127.0.0.1:1";
  EXPECT_EQ(style["glyphs"].stringValue(), root + "/glyphs/{fontstack}/{range}.pbf");
  EXPECT_EQ(style["sprite"].stringValue(), root + "/sprite");
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
    for (const auto& [index, font] : layer[{"layout", "text-font"}])
      body(service, "/glyphs/" + font.stringValue() + "/0-255.pbf");
    if (layer["type"].stringValue() == "background") continue;
    EXPECT_TRUE((style[{"sources", layer["source"].stringValue()}].exists()));
    if (layer["source"].stringValue() != "labels" && layer[{"filter", 1}].stringValue() == "class")
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

TEST(MapServiceTest, LabelsAreNamesAndShields) {
  const std::string line = R"({"type":"LineString","coordinates":[[10,48],[11,48]]})";
  const std::string next = R"({"type":"LineString","coordinates":[[12,48],[11,48]]})";
  const std::string point = R"({"type":"Point","coordinates":[10,48]})";
  const std::string area = R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[4,2],[0,0]]]})";
  const auto shield = [](const std::string& ref, const std::string& icon, const std::string& ink) {
    return R"({"class":"shield","ref":")" + ref + R"(","shield":"shield-)" + icon + R"(","ink":")" +
           ink + "\"}";
  };
  // Geometry, tags, the properties of the only label. Empty: there is none.
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {line, R"("highway":"residential","name":"\u017burawia")",
       R"({"class":"minor","name":"\u017burawia"})"},
      {line, R"("highway":"residential")", ""},
      {line, R"("waterway":"river","name":"Don")", ""},
      {line, R"("highway":"motorway","ref":"I 95")", shield("95", "i-2", "light")},
      {line, R"("highway":"primary","ref":"US 40 Truck;MD 7")", shield("40", "us-2", "dark")},
      {line, R"("highway":"primary","ref":"CG-3")", shield("CG-3", "road-4", "light")},
      {line, R"("highway":"primary","ref":"FIXME")", ""},
      {line, R"("highway":"motorway_link","ref":"I 95")", ""},
      {point, R"("place":"hamlet","name":"x")", R"({"class":"village","name":"x"})"},
      {point, R"("place":"country","name":"x")", ""},
      {area, R"("natural":"water","name":"x")", R"({"class":"water","name":"x"})"},
      {area, R"("landuse":"residential","name":"x")", ""}};
  const auto feature = [](const std::string& geometry, const std::string& tags) {
    return R"({"properties":{)" + tags + R"(},"geometry":)" + geometry + '}';
  };
  const JSON sprite = get(MapService(MapData::builtInTown()), "/sprite@2x.json");
  for (const auto& [geometry, tags, properties] : cases) {
    // Two ways with the same name are one line.
    const std::string more = geometry == line ? ',' + feature(next, tags) : "";
    const MapService service(readFeatures(feature(geometry, tags) + more));
    const JSON labels = get(service, "/labels.geojson")["features"];
    ASSERT_EQ(labels.size(), properties.empty() ? 0U : 1U) << tags;
    if (properties.empty()) continue;
    EXPECT_EQ(labels[0]["properties"], JSON::parse(properties)) << tags;
    EXPECT_EQ((labels[0][{"geometry", "coordinates"}].size()), geometry == line ? 3U : 2U);
    const std::string icon = labels[0][{"properties", "shield"}].stringValue();
    EXPECT_TRUE(icon.empty() || sprite[icon].exists()) << icon;
  }
}

/// Reads the fields of a message of a glyph document, and calls `use` with number, value or length,
/// and bytes of each. Returns false if the message is cut off.
bool readFields(std::string_view bytes,
                const std::function<void(unsigned, std::size_t, std::string_view)>& use) {
  const auto varint = [&] {
    std::size_t value = 0, shift = 0;
    for (bool more = true; more && !bytes.empty(); shift += 7, bytes.remove_prefix(1)) {
      more = (bytes[0] & 0x80) != 0;
      value |= static_cast<std::size_t>(bytes[0] & 0x7F) << shift;
    }
    return value;
  };
  while (!bytes.empty()) {
    const std::size_t tag = varint(), value = varint();
    const std::size_t size = tag % 8 == 2 ? value : 0;
    if (size > bytes.size()) return false;
    use(static_cast<unsigned>(tag / 8), value, bytes.substr(0, size));
    bytes.remove_prefix(size);
  }
  return true;
}

TEST(GlyphServiceTest, DocumentsHaveTheGlyphsOfTheirRange) {
  const MapService service(MapData::builtInTown());
  // Range, a character of it, and what its bitmap has in its center: ink or none. A character
  // that is 0 has no glyph in the font: the range is empty.
  const std::tuple<unsigned, std::size_t, bool> cases[] = {{0, 'I', true},
                                                           {0, 'O', false},
                                                           {0x100, 0x17B, true},
                                                           {0x400, 0x416, true},
                                                           {0x4E00, 0, false}};
  for (const auto& [first, character, ink] : cases) {
    const std::string range = std::to_string(first) + '-' + std::to_string(first + 255);
    const std::string document = body(service, "/glyphs/DejaVu Sans Bold/" + range + ".pbf");
    const unsigned start = first;
    std::map<std::size_t, std::string_view> bitmaps;
    std::map<std::size_t, std::size_t> centers;
    const bool whole = readFields(document, [&](unsigned, std::size_t, std::string_view stack) {
      EXPECT_TRUE(readFields(stack, [&](unsigned part, std::size_t, std::string_view glyph) {
        EXPECT_TRUE(part != 2 || glyph == range) << glyph;
        if (part != 3) return;
        std::map<unsigned, std::size_t> numbers;
        std::string_view bitmap;
        EXPECT_TRUE(
            readFields(glyph, [&](unsigned field, std::size_t value, std::string_view data) {
              numbers[field] = value;
              if (field == 2) bitmap = data;
            }));
        EXPECT_EQ(numbers[1] / 256 * 256, start);
        EXPECT_EQ(bitmap.size(), bitmap.empty() ? 0 : (numbers[3] + 6) * (numbers[4] + 6));
        bitmaps[numbers[1]] = bitmap;
        centers[numbers[1]] = (numbers[4] + 6) / 2 * (numbers[3] + 6) + (numbers[3] + 6) / 2;
      }));
    });
    EXPECT_TRUE(whole);
    ASSERT_EQ(bitmaps.empty(), character == 0) << range;
    if (character == 0) continue;
    const std::string_view bitmap = bitmaps[character];
    ASSERT_FALSE(bitmap.empty()) << character;
    EXPECT_EQ(static_cast<unsigned char>(bitmap[centers[character]]) > 192, ink) << character;
    EXPECT_LT(static_cast<unsigned char>(bitmap[0]), 192) << character;
  }
  for (const char* path : {"/glyphs/Comic/0-255.pbf", "/glyphs/DejaVu Sans Bold/1-256.pbf",
                           "/glyphs/DejaVu Sans Bold/0-511.pbf", "/glyphs/DejaVu Sans Bold/.pbf",
                           "/glyphs/.pbf", "/glyphs/0-255.pbf"}) {
    EXPECT_NE(body(service, path, 404), "");
  }
}

}  // namespace
}  // namespace quorvelkit::sandbox
