// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"
#include "sandbox/MapData.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace quorvelkit::sandbox {

/// What a map screen needs to draw the sandbox's part of the world: a Mapbox style (version 8)
/// under /style.json, and the GeoJSON that it names, /parks.geojson, /water.geojson and
/// /streets.geojson. The style has no texts and no icons, so that it needs no servers for them.
/// Any threads at once.
class MapService {
 public:
  explicit MapService(std::shared_ptr<const MapData> map) : map_(std::move(map)) {}

  /// Answers what is addressed to this service. `rootURL` is where clients find it.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request, const std::string& rootURL) const;

 private:
  std::shared_ptr<const MapData> map_;
};

}  // namespace quorvelkit::sandbox
