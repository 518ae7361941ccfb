// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/WebMercator_p.h>

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QString>
#include <functional>
#include <vector>

class QWidget;

namespace quorvelkit {

struct DrawnLine {
  std::vector<std::vector<Coordinate>> pieces;
  double width = 0;
  QColor color;
};

struct DrawnMarker {
  Coordinate coordinate;
  /// Its device pixel ratio is set.
  QImage picture;
  /// The point of the picture that stands on the coordinate, in device-independent pixels.
  QPointF anchor;
};

/// One engine at work in a widget of its own. Whoever makes it destroys it.
class MapCanvas {
 public:
  MapCanvas() = default;
  MapCanvas(const MapCanvas&) = delete;
  MapCanvas& operator=(const MapCanvas&) = delete;
  virtual ~MapCanvas() = default;

  virtual QWidget* widget() = 0;
  virtual MapCamera camera() const = 0;
  virtual void setCamera(const MapCamera& camera) = 0;
  virtual void add(const DrawnLine& line) = 0;
  virtual void add(const DrawnMarker& marker) = 0;
  virtual void clear() = 0;
};

}  // namespace quorvelkit
