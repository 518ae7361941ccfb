// SPDX-License-Identifier: Apache-2.0
#include "sandbox/MapData.h"

#include "sandbox/EmbeddedFiles.h"
#include "sandbox/GeoJSONReader.h"

#include <QuorvelPlatform/FatalError.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace quorvelkit::sandbox {

std::shared_ptr<const MapData> MapData::fromGeoJSON(std::string_view text, std::string& problem) {
  std::optional<Error> error;
  const JSON document(Data(std::string(text)), JSONReadingOptions::allowFragments, &error);
  if (error) {
    problem = "it contains no JSON: " + error->localizedDescription();
    return nullptr;
  }
  GeoJSONReader reader;
  if (!reader.read(document, problem)) return nullptr;
  return std::make_shared<const MapData>(reader.takeMap());
}

std::shared_ptr<const MapData> MapData::fromFile(const std::string& path, std::string& problem) {
  std::ifstream file(path, std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (!file) {
    problem = "the file cannot be read";
    return nullptr;
  }
  return fromGeoJSON(text, problem);
}

std::shared_ptr<const MapData> MapData::builtInTown() {
  std::string problem;
  const auto read = fromGeoJSON(embeddedFile("town.geojson"), problem);
  if (!read) fatalError("The built-in town cannot be read: " + problem);
  auto town = std::make_shared<MapData>(*read);
  town->source = {"Quorvel", "Quorvel"};
  return town;
}

}  // namespace quorvelkit::sandbox
