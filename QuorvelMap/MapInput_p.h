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

/// Moves and zooms a map view by mouse, wheel, fingers and keys, the same way for every engine.
/// The position under the pointer, or between the fingers, stays there. The level is not lowered
/// below the one at which the world fills the view, and the world's upper and lower edge stay
/// outside.
class MapInput {
 public:
  explicit MapInput(MGLMapView& view) : view_(view) {}

  /// Each returns false for an event that it does not use.
  bool wheel(const QWheelEvent& event);
  bool press(const QMouseEvent& event);
  bool drag(const QMouseEvent& event);
  bool doubleClick(const QMouseEvent& event);
  bool touch(const QTouchEvent& event);
  bool key(const QKeyEvent& event);

  /// Zooms by levels about the middle of the view.
  void zoom(double levels);

 private:
  void move(QPointF from, QPointF to, double levels);
  void zoomAbout(QPointF point, double levels) { move(point, point, levels); }
  bool showRoute();
  void endTap(const QTouchEvent& event);
  QPointF middle() const;

  MGLMapView& view_;
  QPointF grabbed_;
  // Where the fingers of the present touch are, by their numbers.
  std::map<int, QPointF> fingers_;
  // True until a finger of the present touch moves or a second finger comes.
  bool isTap_ = false;
  bool hasTap_ = false;
  QPointF lastTap_;
  unsigned long lastTapTime_ = 0;
};

}  // namespace quorvelkit
