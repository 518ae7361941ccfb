// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MapInput_p.h>
#include <QuorvelMap/WebMercator_p.h>

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleHints>
#include <QTouchEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace quorvelkit {

namespace {

// In eighths of a degree, the unit of QWheelEvent. One step of a standard mouse wheel is 120.
constexpr double wheelPerLevel = 300;
// In device-independent pixels.
constexpr double keyStep = 80;
constexpr double fingerWidth = 40;
// The center of the fingers and their mean distance from the center.
struct TouchGeometry {
  QPointF center;
  double radius = 0;
};

TouchGeometry touchGeometry(const std::vector<QPointF>& fingers) {
  TouchGeometry geometry;
  const auto count = static_cast<double>(fingers.size());
  for (const QPointF& finger : fingers)
    geometry.center += finger / count;
  for (const QPointF& finger : fingers) {
    const QPointF arm = finger - geometry.center;
    geometry.radius += std::hypot(arm.x(), arm.y()) / count;
  }
  return geometry;
}

}  // namespace

QPointF MapInput::center() const { return QRectF(QPointF(), QSizeF(view_.size())).center(); }

// Moves the world position at the point `from` to the point `to` and zooms. Calculates with world
// positions, because a view can show several copies of the world.
void MapInput::move(QPointF from, QPointF to, double levels) {
  const MapCamera camera{view_.centerCoordinate(), view_.zoomLevel()};
  const double fillingLevel = std::log2(std::max(view_.width(), view_.height()) / worldWidth(0));
  const double lowestLevel = std::min(std::max(minimumZoomLevel, fillingLevel), camera.zoomLevel);
  const double level = std::clamp(camera.zoomLevel + levels, lowestLevel, maximumZoomLevel);
  const QPointF fixedPosition =
      worldPosition(camera.center) + (from - center()) / worldWidth(camera.zoomLevel);
  QPointF newCenter = fixedPosition - (to - center()) / worldWidth(level);
  const double edge = std::min(view_.height() / 2.0 / worldWidth(level), 0.5);
  newCenter.setY(std::clamp(newCenter.y(), edge, 1 - edge));
  view_.setZoomLevel(level);
  view_.setCenterCoordinate(coordinateAt(newCenter));
}

void MapInput::zoom(double levels) { zoomAbout(center(), levels); }

bool MapInput::wheel(const QWheelEvent& event) {
  if (event.angleDelta().y() == 0) return false;
  zoomAbout(event.position(), event.angleDelta().y() / wheelPerLevel);
  return true;
}

bool MapInput::press(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return false;
  dragPosition_ = event.localPos();
  return true;
}

bool MapInput::drag(const QMouseEvent& event) {
  if (!event.buttons().testFlag(Qt::LeftButton)) return false;
  move(dragPosition_, event.localPos(), 0);
  dragPosition_ = event.localPos();
  return true;
}

bool MapInput::doubleClick(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return false;
  dragPosition_ = event.localPos();
  zoomAbout(event.localPos(), 1);
  return true;
}

bool MapInput::touch(const QTouchEvent& event) {
  if (event.type() == QEvent::TouchCancel) {
    fingers_.clear();
    isTap_ = hasLastTap_ = false;
    return true;
  }
  // A new finger has no previous position and does not move the map.
  std::vector<QPointF> before;
  std::vector<QPointF> now;
  std::map<int, QPointF> fingers;
  for (const QTouchEvent::TouchPoint& finger : event.touchPoints()) {
    if (finger.state() == Qt::TouchPointReleased) continue;
    const auto known = fingers_.find(finger.id());
    before.push_back(known != fingers_.end() ? known->second : finger.pos());
    now.push_back(finger.pos());
    fingers.emplace(finger.id(), finger.pos());
  }
  fingers_ = std::move(fingers);
  if (event.type() == QEvent::TouchBegin) isTap_ = true;
  const auto& first = event.touchPoints().front();
  const double moved = (first.pos() - first.startPos()).manhattanLength();
  if (event.touchPoints().size() > 1 || moved > fingerWidth / 2) isTap_ = false;
  if (event.type() == QEvent::TouchEnd) detectDoubleTap(event);
  if (event.type() != QEvent::TouchUpdate || now.empty()) return true;
  const TouchGeometry from = touchGeometry(before);
  const TouchGeometry to = touchGeometry(now);
  const bool isPinch = from.radius > 0 && to.radius > 0;
  move(from.center, to.center, isPinch ? std::log2(to.radius / from.radius) : 0);
  return true;
}

// Two taps at about the same position within the double click interval are a double tap.
void MapInput::detectDoubleTap(const QTouchEvent& event) {
  const QPointF position = event.touchPoints().front().pos();
  const auto interval =
      static_cast<unsigned long>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
  const bool isDoubleTap = isTap_ && hasLastTap_ && event.timestamp() - lastTapTime_ <= interval &&
                           (position - lastTap_).manhattanLength() <= fingerWidth;
  hasLastTap_ = isTap_ && !isDoubleTap;
  lastTap_ = position;
  lastTapTime_ = event.timestamp();
  if (isDoubleTap) zoomAbout(position, 1);
}

bool MapInput::key(const QKeyEvent& event) {
  if ((event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0) return false;
  const auto pan = [this](double right, double down) {
    move(center() + QPointF(right, down) * keyStep, center(), 0);
    return true;
  };
  switch (event.key()) {
    case Qt::Key_Left: return pan(-1, 0);
    case Qt::Key_Right: return pan(1, 0);
    case Qt::Key_Up: return pan(0, -1);
    case Qt::Key_Down: return pan(0, 1);
    // On many keyboards, the plus key without Shift is the equals sign.
    case Qt::Key_Plus:
    case Qt::Key_Equal: zoom(1); return true;
    case Qt::Key_Minus: zoom(-1); return true;
    case Qt::Key_Home: return view_.showAnnotations();
    default: return false;
  }
}

}  // namespace quorvelkit
