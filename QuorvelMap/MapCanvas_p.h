// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/WebMercator_p.h>

#include <QColor>
#include <functional>
#include <vector>

class QWidget;

namespace quorvelkit {

/// A line with its appearance.
struct DrawnLine {
  std::vector<std::vector<Coordinate>> pieces;
  /// In device-independent pixels.
  double width = 0;
  QColor color;
};

/// Draws the map and the lines with one engine, in a child widget of the map view. Lines have round
/// joins and round caps. The destructor deletes the widget. Use it on the GUI thread.
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
  /// Removes all lines.
  virtual void clear() = 0;
};

/// Called on the GUI thread when the camera of a canvas may have changed.
using CameraChangedHandler = std::function<void()>;

}  // namespace quorvelkit
