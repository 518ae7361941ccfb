// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"
#include "sandbox/find/NearestIndex.h"

#include <QuorvelPlatform/Coordinate.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// In which part of the world something lies; unknown parts are empty.
struct Locality {
  std::string neighborhood;
  std::string city;
  std::string region;
  std::string postal;
  /// The three-letter code.
  std::string country;
};

/// Tells in which locality a position of the map lies: by the boundaries around it where the map
/// has them, by the settlements and the addresses nearby otherwise. Immutable.
class Localities {
 public:
  /// The map must outlive this object.
  explicit Localities(const MapData& map);

  Locality at(const Coordinate& position) const;
  /// The same for something on the map; its own address tags come first.
  Locality of(const Tags& tags, const Coordinate& position) const;

 private:
  /// What some things on the map say about where they are.
  struct Statements {
    std::vector<std::string> texts;
    std::vector<NearestIndex::Item> items;
    std::optional<NearestIndex> index;

    void add(std::string_view text, const Coordinate& position);
    void finish() { index.emplace(items); }
    /// Empty when there is none within so many meters.
    std::string nearest(const Coordinate& position, double withinMeters) const;
  };
  struct Settlement {
    std::string name;
    /// How far such a settlement reaches, in meters.
    double reach = 0;
  };
  struct Boundary {
    const MapArea* area = nullptr;
    std::string name;
    double south = 90, west = 180, north = -90, east = -180;

    bool contains(const Coordinate& position) const;
  };
  enum class Level { neighborhood, city, region, postal, country, none };

  void addStatements(const Tags& tags, const Coordinate& position);
  void addSettlement(const Tags& tags, const Coordinate& position);
  void addBoundary(const MapArea& area);
  static Level levelOf(const Tags& tags);
  std::string boundaryAround(const Coordinate& position, Level level) const;
  std::string settlementNear(const Coordinate& position) const;

  Statements neighborhoods_;
  Statements cities_;
  Statements regions_;
  Statements postals_;
  Statements countries_;
  std::vector<Settlement> settlements_;
  std::vector<NearestIndex::Item> settlementItems_;
  std::optional<NearestIndex> settlementIndex_;
  std::vector<Boundary> boundaries_[static_cast<int>(Level::none)];
};

}  // namespace quorvelkit::sandbox
