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

/// The width of the world in device-independent pixels.
double worldWidth(double zoomLevel);

/// The Web Mercator projection to a square of side 1: x grows eastward from the antimeridian, y
/// grows southward. Clamps latitudes to the square (85.05 degrees).
QPointF worldPosition(Coordinate coordinate);
Coordinate coordinateAt(QPointF worldPosition);

/// The point of a coordinate in a view, in the copy of the world that is nearest to the center of
/// the view. Units: device-independent pixels from the upper left corner.
QPointF viewPosition(const MapCamera& camera, QSizeF view, Coordinate coordinate);
Coordinate coordinateAtViewPosition(const MapCamera& camera, QSizeF view, QPointF point);

/// Moves the camera north or south until a view of this height shows nothing beyond the upper and
/// lower edge of the world. Centers the world if the view is higher.
MapCamera clampedToWorld(MapCamera camera, double viewHeight);

/// Returns the camera that shows all finite coordinates inside the margins, or nothing if there are
/// no such coordinates.
std::optional<MapCamera> cameraFitting(const std::vector<Coordinate>& coordinates, QSizeF view,
                                       const QMargins& margins);

/// Splits a line where it crosses the antimeridian. The longitudes of each piece are in [-180, 180]
/// and differ by at most 180 from one coordinate to the next. Leaves out coordinates that are not
/// finite and pieces with fewer than two coordinates.
std::vector<std::vector<Coordinate>> splitAtAntimeridian(const std::vector<Coordinate>& line);

}  // namespace quorvelkit
