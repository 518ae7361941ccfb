// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MarkerLayer_p.h>

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace quorvelkit {

namespace {

constexpr double labelGap = 3;
// The width of the frame that shows the keyboard focus.
constexpr int edgeWidth = 4;
constexpr std::size_t maximumAvoidedMarkers = 200;

// The costs of a position of a label. The index of the position is added.
constexpr double outsideViewCost = 1000;
constexpr double overLabelCost = 100;
constexpr double overObstacleCost = 100;
constexpr double overImageCost = 10;
constexpr double overEdgeCost = 3;

double roundedToPixels(double value, double devicePixelRatio) {
  return std::round(value * devicePixelRatio) / devicePixelRatio;
}

QPointF roundedToPixels(QPointF point, double devicePixelRatio) {
  return {roundedToPixels(point.x(), devicePixelRatio),
          roundedToPixels(point.y(), devicePixelRatio)};
}

// Moves a label horizontally into the view and out of obstacles, as far as it still touches the
// center of its image. An obstacle limits the side of the image on which its center is.
QRectF movedIntoSpace(QRectF label, const QRectF& image, double viewWidth,
                      const std::vector<QRect>& obstacles) {
  const double center = image.center().x();
  double minimum = edgeWidth;
  double maximum = viewWidth - edgeWidth;
  for (const QRectF obstacle : obstacles) {
    if (obstacle.bottom() <= label.top() || obstacle.top() >= label.bottom()) continue;
    if (obstacle.center().x() < center) {
      minimum = std::max(minimum, obstacle.right() + labelGap);
    } else {
      maximum = std::min(maximum, obstacle.left() - labelGap);
    }
  }
  const double left = std::max(std::min(label.left(), maximum - label.width()), minimum);
  label.moveLeft(std::clamp(left, center - label.width(), center));
  return label;
}

// The possible positions of a label, in the order of preference.
std::array<QRectF, 8> labelPositions(QSizeF label, const QRectF& image, double viewWidth,
                                     const std::vector<QRect>& obstacles) {
  const double step = label.height() + labelGap;
  const double left = image.center().x() - label.width() / 2;
  const auto row = [&](double top) {
    return movedIntoSpace(QRectF(QPointF(left, top), label), image, viewWidth, obstacles);
  };
  const double above = image.top() - step;
  const double below = image.bottom() + labelGap;
  const double beside = image.center().y() - label.height() / 2;
  return {row(above),
          row(above - step),
          row(above - 2 * step),
          row(below),
          row(below + step),
          row(below + 2 * step),
          QRectF(QPointF(image.right() + labelGap, beside), label),
          QRectF(QPointF(image.left() - labelGap - label.width(), beside), label)};
}

}  // namespace

MarkerLayer::MarkerLayer(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void MarkerLayer::setCamera(const MapCamera& camera) {
  if (camera == camera_) return;
  camera_ = camera;
  if (markers_.empty()) return;
  const QRegion before = coveredRegion();
  layOut();
  update(before | coveredRegion());
}

void MarkerLayer::setObstacles(const std::vector<QRect>& obstacles) {
  if (obstacles == obstacles_) return;
  obstacles_ = obstacles;
  if (!markers_.empty()) invalidateLayout();
}

void MarkerLayer::add(const DrawnMarker& marker) {
  markers_.push_back(marker);
  images_.push_back(marker.image.isNull() ? MarkerImage() : makeMarkerImage(marker.image));
  invalidateLayout();
}

void MarkerLayer::clear() {
  markers_.clear();
  images_.clear();
  invalidateLayout();
}

void MarkerLayer::paintEvent(QPaintEvent*) {
  if (pinImage_.image.devicePixelRatio() != devicePixelRatioF()) isLaidOut_ = false;
  if (!isLaidOut_) layOut();
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  for (const Placement& placement : placements_)
    painter.drawImage(placement.image.topLeft(), imageOf(placement.marker).image);
  for (const Placement& placement : placements_) {
    const QString& title = markers_[placement.marker].title;
    if (!title.isEmpty()) drawLabel(painter, placement.label, title, font());
  }
}

void MarkerLayer::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) invalidateLayout();
}

void MarkerLayer::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  invalidateLayout();
}

const MarkerImage& MarkerLayer::imageOf(std::size_t marker) const {
  return images_[marker].image.isNull() ? pinImage_ : images_[marker];
}

void MarkerLayer::layOut() {
  isLaidOut_ = true;
  const double ratio = devicePixelRatioF();
  if (pinImage_.image.isNull() || pinImage_.image.devicePixelRatio() != ratio)
    pinImage_ = makePinImage(ratio);
  placements_.clear();
  for (std::size_t i = 0; i < markers_.size(); ++i) {
    const MarkerImage& markerImage = imageOf(i);
    const QPointF position = viewPosition(camera_, size(), markers_[i].coordinate);
    if (!std::isfinite(position.x()) || !std::isfinite(position.y())) continue;
    const QSizeF imageSize =
        QSizeF(markerImage.image.size()) / markerImage.image.devicePixelRatio();
    placements_.push_back(
        {i, QRectF(roundedToPixels(position - markerImage.anchor, ratio), imageSize), QRectF()});
  }
  std::vector<const Placement*> inView;
  for (const Placement& placement : placements_) {
    if (inView.size() == maximumAvoidedMarkers) break;
    if (placement.image.intersects(rect())) inView.push_back(&placement);
  }
  for (Placement& placement : placements_) {
    if (!markers_[placement.marker].title.isEmpty()) placeLabel(placement, inView);
  }
}

void MarkerLayer::placeLabel(Placement& placement, const std::vector<const Placement*>& avoided) {
  const int maximumWidth = std::max(width() - 2 * edgeWidth, 0);
  const QSizeF size = labelSize(markers_[placement.marker].title, font(), maximumWidth);
  const bool isInView = std::find(avoided.begin(), avoided.end(), &placement) != avoided.end();
  const auto positions = labelPositions(size, placement.image, width(), obstacles_);
  const QRectF inner = rect().adjusted(edgeWidth, edgeWidth, -edgeWidth, -edgeWidth);
  double best = 0;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    double cost = static_cast<double>(i);
    if (!QRectF(rect()).contains(positions[i])) {
      cost += outsideViewCost;
    } else if (!inner.contains(positions[i])) {
      cost += overEdgeCost;
    }
    for (const QRectF obstacle : obstacles_)
      if (obstacle.intersects(positions[i])) cost += overObstacleCost;
    for (const Placement* const other : avoided) {
      if (other == &placement) continue;
      if (other->label.intersects(positions[i])) cost += overLabelCost;
      if (other->image.intersects(positions[i])) cost += overImageCost;
    }
    if (i > 0 && cost >= best) continue;
    best = cost;
    placement.label = QRectF(roundedToPixels(positions[i].topLeft(), devicePixelRatioF()), size);
    // Other markers always use the first position.
    if (!isInView) return;
  }
}

void MarkerLayer::invalidateLayout() {
  isLaidOut_ = false;
  update();
}

QRegion MarkerLayer::coveredRegion() const {
  if (placements_.size() > maximumAvoidedMarkers) return rect();
  QRegion region;
  for (const Placement& placement : placements_) {
    region |= placement.image.toAlignedRect();
    region |= placement.label.toAlignedRect();
  }
  return region & rect();
}

}  // namespace quorvelkit
