// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/WebMercator_p.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvelkit {

namespace {

constexpr double degree = std::numbers::pi / 180;
constexpr double maximumLatitude = 85.051128779806604;
// Limits the zoom level for a single coordinate or coordinates near each other.
constexpr double maximumFittedZoomLevel = 17;

bool isFinite(Coordinate c) { return std::isfinite(c.latitude) && std::isfinite(c.longitude); }

// Returns the longitude in [-180, 180]. Does not change -180 and 180.
double wrappedLongitude(double longitude) {
  return std::abs(longitude) <= 180 ? longitude : std::remainder(longitude, 360);
}

// An interval of x in the periodic world. Its end may be larger than 1.
struct Interval {
  double start = 0;
  double length = 0;
};

// Returns the shortest interval that contains all values.
Interval intervalAround(std::vector<double> xs) {
  std::sort(xs.begin(), xs.end());
  double widestGap = xs.front() + 1 - xs.back();
  double start = xs.front();
  for (std::size_t i = 1; i < xs.size(); ++i) {
    if (xs[i] - xs[i - 1] <= widestGap) continue;
    widestGap = xs[i] - xs[i - 1];
    start = xs[i];
  }
  return {start, 1 - widestGap};
}

}  // namespace

double worldWidth(double zoomLevel) { return 512 * std::exp2(zoomLevel); }

QPointF worldPosition(Coordinate coordinate) {
  const double latitude = std::clamp(coordinate.latitude, -maximumLatitude, maximumLatitude);
  const double y = std::asinh(std::tan(latitude * degree)) / (2 * std::numbers::pi);
  return {(wrappedLongitude(coordinate.longitude) + 180) / 360, 0.5 - y};
}

Coordinate coordinateAt(QPointF position) {
  const double latitude =
      std::atan(std::sinh((0.5 - position.y()) * 2 * std::numbers::pi)) / degree;
  const double x = position.x() - std::floor(position.x());
  return {latitude, x * 360 - 180};
}

QPointF viewPosition(const MapCamera& camera, QSizeF view, Coordinate coordinate) {
  QPointF offset = worldPosition(coordinate) - worldPosition(camera.center);
  offset.rx() -= std::round(offset.x());
  return offset * worldWidth(camera.zoomLevel) + QPointF(view.width() / 2, view.height() / 2);
}

Coordinate coordinateAtViewPosition(const MapCamera& camera, QSizeF view, QPointF point) {
  const QPointF offset = point - QPointF(view.width() / 2, view.height() / 2);
  return coordinateAt(worldPosition(camera.center) + offset / worldWidth(camera.zoomLevel));
}

MapCamera clampedToWorld(MapCamera camera, double viewHeight) {
  const double margin = std::min(viewHeight / 2 / worldWidth(camera.zoomLevel), 0.5);
  const QPointF center = worldPosition(camera.center);
  if (center.y() < margin || center.y() > 1 - margin) {
    const double y = std::clamp(center.y(), margin, 1 - margin);
    camera.center.latitude = coordinateAt({center.x(), y}).latitude;
  }
  return camera;
}

std::optional<MapCamera> cameraFitting(const std::vector<Coordinate>& coordinates, QSizeF view,
                                       const QMargins& margins) {
  std::vector<double> xs;
  double top = 1;
  double bottom = 0;
  for (const Coordinate& coordinate : coordinates) {
    if (!isFinite(coordinate)) continue;
    const QPointF position = worldPosition(coordinate);
    xs.push_back(position.x());
    top = std::min(top, position.y());
    bottom = std::max(bottom, position.y());
  }
  if (xs.empty()) return std::nullopt;
  const Interval horizontal = intervalAround(std::move(xs));
  const double width = std::max(view.width() - margins.left() - margins.right(), 1.0);
  const double height = std::max(view.height() - margins.top() - margins.bottom(), 1.0);
  const double tiny = 1e-12;
  const double scale =
      std::min(width / std::max(horizontal.length, tiny), height / std::max(bottom - top, tiny));
  MapCamera camera;
  camera.zoomLevel = std::clamp(std::log2(scale / 512), minimumZoomLevel, maximumFittedZoomLevel);
  const QPointF middle(horizontal.start + horizontal.length / 2, (top + bottom) / 2);
  const QPointF shift(margins.right() - margins.left(), margins.bottom() - margins.top());
  camera.center = coordinateAt(middle + shift / 2 / worldWidth(camera.zoomLevel));
  return camera;
}

std::vector<std::vector<Coordinate>> splitAtAntimeridian(const std::vector<Coordinate>& line) {
  std::vector<std::vector<Coordinate>> pieces(1);
  pieces.back().reserve(line.size());
  for (const Coordinate& original : line) {
    if (!isFinite(original)) continue;
    const Coordinate point{std::clamp(original.latitude, -maximumLatitude, maximumLatitude),
                           wrappedLongitude(original.longitude)};
    if (!pieces.back().empty()) {
      const Coordinate last = pieces.back().back();
      const double step = point.longitude - last.longitude;
      if (std::abs(step) > 180) {
        // The longitude of the antimeridian before the crossing.
        const double side = step < 0 ? 180 : -180;
        const double wholeStep = step + 2 * side;
        const double part = (side - last.longitude) / (wholeStep == 0 ? side : wholeStep);
        const QPointF from = worldPosition(last);
        const QPointF to = worldPosition(point);
        const double y = from.y() + part * (to.y() - from.y());
        const double latitude = coordinateAt({0, y}).latitude;
        pieces.back().push_back({latitude, side});
        pieces.emplace_back().push_back({latitude, -side});
      }
    }
    pieces.back().push_back(point);
  }
  std::erase_if(pieces, [](const auto& piece) { return piece.size() < 2; });
  return pieces;
}

}  // namespace quorvelkit
