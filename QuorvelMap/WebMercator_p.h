// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <QMargins>
#include <QPointF>
#include <QSizeF>
#include <optional>
#include <vector>

namespace quorvelkit {

inline constexpr double minimumZoomLevel = 0;
inline constexpr double maximumZoomLevel = 20;

struct MapCamera {
  Coordinate center;
  double zoomLevel = 0;

  bool operator==(const MapCamera&) const = default;
};

/// Width of the world in device-independent pixels.
double worldWidth(double zoomLevel);

/// The position in a square of side 1: x grows eastward from the antimeridian, y southward.
/// Latitudes beyond the square's edges (85.05 degrees) count as the edge.
QPointF worldPosition(Coordinate coordinate);
Coordinate coordinateAt(QPointF worldPosition);

/// Where a position is in a view, in the copy of the world nearest to the view's middle.
QPointF viewPosition(const MapCamera& camera, QSizeF view, Coordinate coordinate);
Coordinate coordinateAtViewPosition(const MapCamera& camera, QSizeF view, QPointF point);

/// The camera moved north or south so that no view of this height looks past the world's edges; in
/// the middle when the world is less high than the view.
MapCamera keptInWorld(MapCamera camera, double viewHeight);

/// The camera that shows all positions inside the margins, but for those that are not finite;
/// absent when that leaves none.
std::optional<MapCamera> cameraShowing(const std::vector<Coordinate>& coordinates, QSizeF view,
                                       const QMargins& margins);

/// A line cut where it crosses the antimeridian, so that longitudes inside a piece stay within
/// [-180, 180] and never jump. Positions that are not finite are left out, and so are pieces of
/// one position.
std::vector<std::vector<Coordinate>> splitAtAntimeridian(const std::vector<Coordinate>& line);

}  // namespace quorvelkit
