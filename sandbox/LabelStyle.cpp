// SPDX-License-Identifier: Apache-2.0
#include "sandbox/LabelStyle.h"

#include "sandbox/GlyphService.h"

#include <array>
#include <string>
#include <utility>

namespace quorvelkit::sandbox {
namespace {

struct Label {
  std::string_view kind;
  double minimumZoom;
  /// The sizes at zoom levels 10 and 17, in pixels.
  double smallSize;
  double largeSize;
  std::string_view color;
  bool bold = false;
  bool capitals = false;
};

constexpr std::string_view inkColor = "#4b4437";
constexpr std::string_view haloColor = "#fffdf7";

// The least important first.
constexpr auto streetLabels = std::to_array<Label>({
    {"service", 16, 8, 10.5, inkColor},
    {"path", 15.5, 8, 10.5, "#7b5f45"},
    {"minor", 13.6, 8, 13, inkColor},
    {"secondary", 11, 9, 13.5, inkColor},
    {"primary", 10.8, 9.5, 14, "#4a3a14"},
    {"motorway", 10.8, 9.5, 14, "#5b2f0d"},
});

constexpr auto pointLabels = std::to_array<Label>({
    {"park", 12.4, 9, 13, "#3f6b2c"},
    {"water", 11.5, 9.5, 13.5, "#2f6f99"},
    {"suburb", 11.8, 9, 14, "#6a6256", false, true},
    {"village", 10.5, 10, 16, "#3a352c"},
    {"town", 8, 12, 20, "#2c2820", true},
    {"city", 5, 13, 22, "#2c2820", true},
});

JSON stops(double small, double large) {
  return JSON::makeDictionary(
      {{"stops", JSON::makeArray({JSON::makeArray({10, small}), JSON::makeArray({17, large})})}});
}

JSON fonts(bool bold) { return JSON::makeArray({bold ? boldFont : regularFont}); }

JSON paint(std::string_view color) {
  return JSON::makeDictionary({{"text-color", color},
                               {"text-halo-color", haloColor},
                               {"text-halo-width", 1.4},
                               {"text-halo-blur", 0.4}});
}

JSON layer(const std::string& id, double minimumZoom, JSON filter, ValueMap layout, JSON paint) {
  return JSON::makeDictionary({{"id", id},
                               {"type", "symbol"},
                               {"source", "labels"},
                               {"minzoom", minimumZoom},
                               {"filter", std::move(filter)},
                               {"layout", Value(std::move(layout))},
                               {"paint", std::move(paint)}});
}

JSON hasValue(const char* key, std::string_view value) {
  return JSON::makeArray({"==", key, value});
}

JSON streetNames(const Label& label) {
  return layer(std::string(label.kind) + "-name", label.minimumZoom, hasValue("class", label.kind),
               {{"symbol-placement", "line"},
                {"symbol-spacing", 320},
                {"text-field", "{name}"},
                {"text-font", fonts(false)},
                {"text-size", stops(label.smallSize, label.largeSize)},
                {"text-max-angle", 35},
                {"text-padding", 3}},
               paint(label.color));
}

JSON pointNames(const Label& label) {
  ValueMap layout{{"text-field", "{name}"},
                  {"text-font", fonts(label.bold)},
                  {"text-size", stops(label.smallSize, label.largeSize)},
                  {"text-max-width", 8},
                  {"text-padding", 4}};
  if (label.capitals) {
    layout.set("text-transform", "uppercase");
    layout.set("text-letter-spacing", 0.08);
  }
  return layer(std::string(label.kind) + "-name", label.minimumZoom, hasValue("class", label.kind),
               std::move(layout), paint(label.color));
}

JSON shields(const char* ink, const char* color) {
  return layer(std::string("shield-") + ink, 10,
               JSON::makeArray({"all", hasValue("class", "shield"), hasValue("ink", ink)}),
               {{"symbol-placement", "line"},
                {"symbol-spacing", 260},
                {"icon-image", "{shield}"},
                {"icon-rotation-alignment", "viewport"},
                {"text-rotation-alignment", "viewport"},
                {"text-field", "{ref}"},
                {"text-font", fonts(true)},
                {"text-size", 10},
                {"text-padding", 6},
                {"icon-padding", 6}},
               JSON::makeDictionary({{"text-color", color}}));
}

}  // namespace

void addLabelLayers(ValueArray& layers) {
  for (const Label& label : streetLabels)
    layers.push_back(streetNames(label));
  for (const Label& label : pointLabels) {
    // Numbers of roads are more important than all but settlements.
    if (label.kind == "village") {
      layers.push_back(shields("dark", "#222222"));
      layers.push_back(shields("light", "#ffffff"));
    }
    layers.push_back(pointNames(label));
  }
}

}  // namespace quorvelkit::sandbox
