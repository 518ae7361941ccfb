// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"
#include "sandbox/MapData.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace quorvelkit::sandbox {

/// Serves a Mapbox style (version 8) at /style.json, and the GeoJSON that the style refers to at
/// /land.geojson, /water.geojson, /streets.geojson and /labels.geojson. Serves its glyphs and its
/// sprite, too. Thread-safe.
class MapService {
 public:
  explicit MapService(std::shared_ptr<const MapData> map) : map_(std::move(map)) {}

  /// Returns nothing if the path belongs to another service. `rootURL` is the URL of this server.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request, const std::string& rootURL) const;

 private:
  std::shared_ptr<const MapData> map_;
};

}  // namespace quorvelkit::sandbox
