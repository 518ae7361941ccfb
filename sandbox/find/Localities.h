// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"
#include "sandbox/find/SpatialIndex.h"

#include <QuorvelPlatform/Coordinate.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// The parts of an address above the street; unknown parts are empty.
struct Locality {
  std::string neighborhood;
  std::string city;
  std::string region;
  std::string postal;
  /// The three-letter code.
  std::string country;
};

/// Finds the locality of a position on the map, from the boundaries around it, or else from the
/// settlements and addresses nearby. Immutable.
class Localities {
 public:
  /// The map must outlive this object.
  explicit Localities(const MapData& map);

  Locality at(const Coordinate& position) const;
  /// Like at(), for a feature of the map: its own address tags take precedence.
  Locality of(const Tags& tags, const Coordinate& position) const;

 private:
  /// The values of one address tag, with the positions of their features.
  struct TagValues {
    std::vector<std::string> texts;
    std::vector<SpatialIndex::Item> items;
    std::optional<SpatialIndex> index;

    void add(std::string_view text, const Coordinate& position);
    void buildIndex() { index.emplace(items); }
    /// Returns the nearest value, or an empty text if there is none within `withinMeters`.
    std::string nearest(const Coordinate& position, double withinMeters) const;
  };
  struct Settlement {
    std::string name;
    /// In meters.
    double radius = 0;
  };
  struct Boundary {
    const MapArea* area = nullptr;
    std::string name;
    double south = 90, west = 180, north = -90, east = -180;

    bool contains(const Coordinate& position) const;
  };
  enum class Level { neighborhood, city, region, postal, country, none };

  void addTagValues(const Tags& tags, const Coordinate& position);
  void addSettlement(const Tags& tags, const Coordinate& position);
  void addBoundary(const MapArea& area);
  static Level levelOf(const Tags& tags);
  std::string boundaryContaining(const Coordinate& position, Level level) const;
  std::string nearestSettlement(const Coordinate& position) const;

  TagValues neighborhoods_;
  TagValues cities_;
  TagValues regions_;
  TagValues postals_;
  TagValues countries_;
  std::vector<Settlement> settlements_;
  std::vector<SpatialIndex::Item> settlementItems_;
  std::optional<SpatialIndex> settlementIndex_;
  std::vector<Boundary> boundaries_[static_cast<int>(Level::none)];
};

}  // namespace quorvelkit::sandbox
