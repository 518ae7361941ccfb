// SPDX-License-Identifier: Apache-2.0
#include "sandbox/MapStyle.h"

#include "sandbox/LabelStyle.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <utility>

namespace quorvelkit::sandbox {

namespace {

constexpr std::array<double, 3> zoomLevels = {11, 14, 17};
// The additional width of the casing of a street, in pixels at the zoom levels.
constexpr std::array<double, 3> casingWidths = {0.8, 1.6, 2.4};

struct StreetStyle {
  std::string_view name;
  std::string_view color;
  std::string_view casing;
  // In pixels at the zoom levels.
  std::array<double, 3> widths;
};

// In drawing order, from bottom to top.
constexpr auto streetStyles = std::to_array<StreetStyle>({
    {"service", "#ffffff", "#d8d2c6", {0.3, 1.4, 6}},
    {"minor", "#ffffff", "#c2baaa", {0.8, 3.2, 10}},
    {"secondary", "#fff3bf", "#d6c27f", {1.5, 4.6, 13}},
    {"primary", "#ffdc87", "#d9a93f", {2, 5.6, 15}},
    {"motorway", "#f6a96b", "#cf7a33", {2.6, 7, 18}},
});

// In drawing order, from bottom to top: a park is above the town around it.
constexpr auto landColors = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"town", "#dfd7c9"},
    {"park", "#d2e6b8"},
    {"wood", "#bddaa6"},
    {"beach", "#f5e8c0"},
});

bool isOneOf(std::string_view value, std::initializer_list<std::string_view> values) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

template <class... Elements>
Value arrayOf(Elements&&... elements) {
  ValueArray array;
  (array.emplace_back(std::forward<Elements>(elements)), ...);
  return Value(std::move(array));
}

// Returns a line width that depends on the zoom level.
Value widthByZoom(const std::array<double, 3>& widths, const std::array<double, 3>& more = {}) {
  ValueArray stops;
  for (std::size_t i = 0; i < zoomLevels.size(); ++i)
    stops.push_back(arrayOf(zoomLevels[i], widths[i] + more[i]));
  return JSON::makeDictionary({{"base", 1.4}, {"stops", Value(std::move(stops))}});
}

Value hasClass(std::string_view name) { return arrayOf("==", "class", name); }

Value fill(std::string_view id, std::string_view source, Value filter, std::string_view color) {
  return JSON::makeDictionary({{"id", id},
                               {"type", "fill"},
                               {"source", source},
                               {"filter", std::move(filter)},
                               {"paint", JSON::makeDictionary({{"fill-color", color}})}});
}

Value line(std::string_view id, std::string_view source, Value filter, ValueMap paint) {
  return JSON::makeDictionary(
      {{"id", id},
       {"type", "line"},
       {"source", source},
       {"filter", std::move(filter)},
       {"layout", JSON::makeDictionary({{"line-cap", "round"}, {"line-join", "round"}})},
       {"paint", Value(std::move(paint))}});
}

}  // namespace

std::string_view streetClass(const Tags& tags) {
  std::string_view kind = tags["highway"];
  constexpr std::string_view link = "_link";
  if (kind.ends_with(link)) kind.remove_suffix(link.size());
  if (isOneOf(kind, {"motorway", "trunk"})) return "motorway";
  if (kind == "primary") return "primary";
  if (isOneOf(kind, {"secondary", "tertiary"})) return "secondary";
  if (isOneOf(kind, {"residential", "unclassified", "living_street", "road"})) return "minor";
  if (kind == "service") return "service";
  if (isOneOf(kind, {"footway", "path", "pedestrian", "cycleway", "steps", "track", "bridleway"}))
    return "path";
  return {};
}

std::string_view landClass(const Tags& tags) {
  if (isOneOf(tags["leisure"], {"park", "garden", "golf_course", "nature_reserve", "pitch"}) ||
      isOneOf(tags["landuse"], {"grass", "meadow", "cemetery", "recreation_ground"})) {
    return "park";
  }
  if (tags.is("landuse", "forest") || isOneOf(tags["natural"], {"wood", "scrub", "heath"})) {
    return "wood";
  }
  if (isOneOf(tags["natural"], {"beach", "sand"})) return "beach";
  if (isOneOf(tags["landuse"], {"residential", "commercial", "industrial", "retail"})) {
    return "town";
  }
  return {};
}

bool isWater(const Tags& tags) {
  return tags.is("natural", "water") || tags.is("landuse", "reservoir") ||
         isOneOf(tags["waterway"], {"river", "stream", "canal", "riverbank", "dock"});
}

JSON mapStyle(const std::string& rootURL, const std::string& attribution) {
  ValueMap sources;
  for (const char* const name : {"land", "water", "streets", "labels"}) {
    sources.set(name, JSON::makeDictionary({{"type", "geojson"},
                                            {"data", rootURL + '/' + name + ".geojson"},
                                            {"attribution", attribution}}));
  }
  ValueArray layers;
  layers.push_back(
      JSON::makeDictionary({{"id", "ground"},
                            {"type", "background"},
                            {"paint", JSON::makeDictionary({{"background-color", "#ece8de"}})}}));
  for (const auto& [name, color] : landColors)
    layers.push_back(fill(name, "land", hasClass(name), color));
  layers.push_back(fill("water", "water", arrayOf("==", "$type", "Polygon"), "#a7d2ec"));
  layers.push_back(line("streams", "water", arrayOf("==", "$type", "LineString"),
                        {{"line-color", "#a7d2ec"}, {"line-width", widthByZoom({1, 3, 9})}}));
  layers.push_back(line("path", "streets", hasClass("path"),
                        {{"line-color", "#b5967a"},
                         {"line-width", widthByZoom({0.5, 1.2, 2.5})},
                         {"line-dasharray", arrayOf(2, 2)}}));
  for (const StreetStyle& style : streetStyles) {
    layers.push_back(line(
        std::string(style.name) + "-casing", "streets", hasClass(style.name),
        {{"line-color", style.casing}, {"line-width", widthByZoom(style.widths, casingWidths)}}));
  }
  for (const StreetStyle& style : streetStyles) {
    layers.push_back(
        line(style.name, "streets", hasClass(style.name),
             {{"line-color", style.color}, {"line-width", widthByZoom(style.widths)}}));
  }
  addLabelLayers(layers);
  return JSON::makeDictionary({{"version", 8},
                               {"name", "Sandbox"},
                               {"glyphs", rootURL + "/glyphs/{fontstack}/{range}.pbf"},
                               {"sprite", rootURL + "/sprite"},
                               {"sources", Value(std::move(sources))},
                               {"layers", Value(std::move(layers))}});
}

}  // namespace quorvelkit::sandbox
