// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/WebMercator_p.h>

#include <QColor>
#include <functional>
#include <vector>

class QWidget;

namespace quorvelkit {

struct DrawnLine {
  std::vector<std::vector<Coordinate>> pieces;
  double width = 0;
  QColor color;
};

/// One engine at work in a widget of its own: the ground and the lines, with round joins and caps.
/// Whoever makes it destroys it.
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
  virtual void clear() = 0;
};

/// Called whenever a canvas has drawn, or is about to, with a camera that may be another one.
using CanvasMovedHandler = std::function<void()>;

}  // namespace quorvelkit
