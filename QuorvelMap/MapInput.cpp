// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>
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

// In eighths of a degree, as Qt counts: a notch of an ordinary wheel is 120.
constexpr double wheelPerLevel = 300;
// In device-independent pixels.
constexpr double keyStep = 80;
constexpr double fingerWidth = 40;
// Space for markers with titles at the ends of a route.
constexpr QMargins routeMargins(70, 90, 70, 40);

QMargins marginsFor(const QSize& view) {
  return {std::min(routeMargins.left(), view.width() / 4),
          std::min(routeMargins.top(), view.height() / 3),
          std::min(routeMargins.right(), view.width() / 4),
          std::min(routeMargins.bottom(), view.height() / 4)};
}

// The middle of the fingers and their mean distance from it.
struct Grip {
  QPointF middle;
  double spread = 0;
};

Grip gripOf(const std::vector<QPointF>& fingers) {
  Grip grip;
  const auto count = static_cast<double>(fingers.size());
  for (const QPointF& finger : fingers)
    grip.middle += finger / count;
  for (const QPointF& finger : fingers) {
    const QPointF arm = finger - grip.middle;
    grip.spread += std::hypot(arm.x(), arm.y()) / count;
  }
  return grip;
}

}  // namespace

QPointF MapInput::middle() const { return QRectF(QPointF(), QSizeF(view_.size())).center(); }

// Moves what is at `from` to `to`. In world positions, so that it also holds where a view shows
// the same place twice.
void MapInput::move(QPointF from, QPointF to, double levels) {
  const MapCamera camera{view_.centerCoordinate(), view_.zoomLevel()};
  const double filling = std::log2(std::max(view_.width(), view_.height()) / worldWidth(0));
  const double lowest = std::min(std::max(minimumZoomLevel, filling), camera.zoomLevel);
  const double level = std::clamp(camera.zoomLevel + levels, lowest, maximumZoomLevel);
  const QPointF held =
      worldPosition(camera.center) + (from - middle()) / worldWidth(camera.zoomLevel);
  QPointF center = held - (to - middle()) / worldWidth(level);
  const double edge = std::min(view_.height() / 2.0 / worldWidth(level), 0.5);
  center.setY(std::clamp(center.y(), edge, 1 - edge));
  view_.setZoomLevel(level);
  view_.setCenterCoordinate(coordinateAt(center));
}

void MapInput::zoom(double levels) { zoomAbout(middle(), levels); }

bool MapInput::wheel(const QWheelEvent& event) {
  if (event.angleDelta().y() == 0) return false;
  zoomAbout(event.position(), event.angleDelta().y() / wheelPerLevel);
  return true;
}

bool MapInput::press(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return false;
  grabbed_ = event.localPos();
  return true;
}

bool MapInput::drag(const QMouseEvent& event) {
  if (!event.buttons().testFlag(Qt::LeftButton)) return false;
  move(grabbed_, event.localPos(), 0);
  grabbed_ = event.localPos();
  return true;
}

bool MapInput::doubleClick(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return false;
  grabbed_ = event.localPos();
  zoomAbout(event.localPos(), 1);
  return true;
}

bool MapInput::touch(const QTouchEvent& event) {
  if (event.type() == QEvent::TouchCancel) {
    fingers_.clear();
    isTap_ = hasTap_ = false;
    return true;
  }
  // A finger that has just come moves nothing.
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
  if (event.type() == QEvent::TouchEnd) endTap(event);
  if (event.type() != QEvent::TouchUpdate || now.empty()) return true;
  const Grip from = gripOf(before);
  const Grip to = gripOf(now);
  const bool pinches = from.spread > 0 && to.spread > 0;
  move(from.middle, to.middle, pinches ? std::log2(to.spread / from.spread) : 0);
  return true;
}

// Two taps at one place are a double tap.
void MapInput::endTap(const QTouchEvent& event) {
  const QPointF place = event.touchPoints().front().pos();
  const auto interval =
      static_cast<unsigned long>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
  const bool isSecond = isTap_ && hasTap_ && event.timestamp() - lastTapTime_ <= interval &&
                        (place - lastTap_).manhattanLength() <= fingerWidth;
  hasTap_ = isTap_ && !isSecond;
  lastTap_ = place;
  lastTapTime_ = event.timestamp();
  if (isSecond) zoomAbout(place, 1);
}

bool MapInput::key(const QKeyEvent& event) {
  if ((event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0) return false;
  const auto pan = [this](double right, double down) {
    move(middle() + QPointF(right, down) * keyStep, middle(), 0);
    return true;
  };
  switch (event.key()) {
    case Qt::Key_Left: return pan(-1, 0);
    case Qt::Key_Right: return pan(1, 0);
    case Qt::Key_Up: return pan(0, -1);
    case Qt::Key_Down: return pan(0, 1);
    // Without Shift, plus is the equals sign on many keyboards.
    case Qt::Key_Plus:
    case Qt::Key_Equal: zoom(1); return true;
    case Qt::Key_Minus: zoom(-1); return true;
    case Qt::Key_Home: return showRoute();
    default: return false;
  }
}

// The lines, or the markers when there are no lines.
bool MapInput::showRoute() {
  std::vector<Coordinate> lines;
  std::vector<Coordinate> points;
  for (const auto& annotation : view_.annotations()) {
    if (const auto* line = dynamic_cast<const MGLPolyline*>(annotation.get())) {
      lines.insert(lines.end(), line->coordinates().begin(), line->coordinates().end());
    } else if (const auto* point = dynamic_cast<const MGLPointAnnotation*>(annotation.get())) {
      points.push_back(point->coordinate());
    }
  }
  const auto& shown = lines.empty() ? points : lines;
  view_.setVisibleCoordinates(shown, marginsFor(view_.size()));
  return !shown.empty();
}

}  // namespace quorvelkit
