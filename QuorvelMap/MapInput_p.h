// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPointF>
#include <map>

class QKeyEvent;
class QMouseEvent;
class QTouchEvent;
class QWheelEvent;

namespace quorvelkit {

class MGLMapView;

/// Moves and zooms a map view by mouse, wheel, touch and keys, in the same way for all engines. The
/// coordinate below the pointer, or between the fingers, keeps its point in the view. Input does
/// not zoom out further than the level at which the world fills the view, and does not move the
/// upper or lower edge of the world into the view.
class MapInput {
 public:
  explicit MapInput(MGLMapView& view) : view_(view) {}

  /// The event functions return false if they ignore the event.
  bool wheel(const QWheelEvent& event);
  bool press(const QMouseEvent& event);
  bool drag(const QMouseEvent& event);
  bool doubleClick(const QMouseEvent& event);
  bool touch(const QTouchEvent& event);
  bool key(const QKeyEvent& event);

  /// Zooms about the center of the view.
  void zoom(double levels);

 private:
  void move(QPointF from, QPointF to, double levels);
  void zoomAbout(QPointF point, double levels) { move(point, point, levels); }
  void detectDoubleTap(const QTouchEvent& event);
  QPointF center() const;

  MGLMapView& view_;
  QPointF dragPosition_;
  // The fingers of the current touch, by their identifiers.
  std::map<int, QPointF> fingers_;
  // False after a finger of the current touch has moved or a second finger has touched.
  bool isTap_ = false;
  bool hasLastTap_ = false;
  QPointF lastTap_;
  // In milliseconds.
  unsigned long lastTapTime_ = 0;
};

}  // namespace quorvelkit
