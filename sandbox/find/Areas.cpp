// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/Areas.h"

#include <cmath>
#include <cstddef>

namespace quorvelkit::sandbox {

bool areaContains(const MapArea& area, const Coordinate& position) {
  // A ray to the north from a position inside crosses the rings an odd number of times.
  bool inside = false;
  for (const MapArea::Polygon& polygon : area.polygons) {
    for (const MapArea::Ring& ring : polygon) {
      for (std::size_t i = 1; i < ring.size(); ++i) {
        const Coordinate& a = ring[i - 1];
        const Coordinate& b = ring[i];
        if ((a.longitude > position.longitude) == (b.longitude > position.longitude)) continue;
        const double fraction = (position.longitude - a.longitude) / (b.longitude - a.longitude);
        if (std::lerp(a.latitude, b.latitude, fraction) > position.latitude) inside = !inside;
      }
    }
  }
  return inside;
}

std::optional<Coordinate> areaCentroid(const MapArea& area) {
  if (area.polygons.empty() || area.polygons.front().empty()) return std::nullopt;
  const MapArea::Ring& ring = area.polygons.front().front();
  if (ring.empty()) return std::nullopt;
  // Coordinates relative to the first position keep the precision of the products.
  const Coordinate origin = ring.front();
  double twiceArea = 0;
  double x = 0;
  double y = 0;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    const double ax = ring[i - 1].longitude - origin.longitude;
    const double ay = ring[i - 1].latitude - origin.latitude;
    const double bx = ring[i].longitude - origin.longitude;
    const double by = ring[i].latitude - origin.latitude;
    const double cross = ax * by - bx * ay;
    twiceArea += cross;
    x += (ax + bx) * cross;
    y += (ay + by) * cross;
  }
  if (twiceArea == 0) return origin;
  return Coordinate{origin.latitude + y / (3 * twiceArea), origin.longitude + x / (3 * twiceArea)};
}

}  // namespace quorvelkit::sandbox
