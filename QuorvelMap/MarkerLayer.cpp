// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MarkerLayer_p.h>

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace quorvelkit {

namespace {

constexpr double gap = 3;
constexpr std::size_t maximumAvoided = 200;

// What a place for a title costs, besides being further down in the order of preference.
constexpr double outOfView = 1000;
constexpr double onATitle = 100;
constexpr double onASymbol = 10;

double snapped(double value, double devicePixelRatio) {
  return std::round(value * devicePixelRatio) / devicePixelRatio;
}

QPointF snapped(QPointF point, double devicePixelRatio) {
  return {snapped(point.x(), devicePixelRatio), snapped(point.y(), devicePixelRatio)};
}

// Moved sideways into the view, but not away from its symbol.
QRectF keptInView(QRectF plate, const QRectF& symbol, double viewWidth) {
  double left = std::min(plate.left(), viewWidth - plate.width());
  left = std::max(left, 0.0);
  plate.moveLeft(std::clamp(left, symbol.center().x() - plate.width(), symbol.center().x()));
  return plate;
}

// Where a title may stand, the best place first.
std::array<QRectF, 8> placesFor(QSizeF plate, const QRectF& symbol, double viewWidth) {
  const double step = plate.height() + gap;
  const double left = symbol.center().x() - plate.width() / 2;
  const auto row = [&](double top) {
    return keptInView(QRectF(QPointF(left, top), plate), symbol, viewWidth);
  };
  const double above = symbol.top() - step;
  const double below = symbol.bottom() + gap;
  const double beside = symbol.center().y() - plate.height() / 2;
  return {row(above),
          row(above - step),
          row(above - 2 * step),
          row(below),
          row(below + step),
          row(below + 2 * step),
          QRectF(QPointF(symbol.right() + gap, beside), plate),
          QRectF(QPointF(symbol.left() - gap - plate.width(), beside), plate)};
}

}  // namespace

MarkerLayer::MarkerLayer(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void MarkerLayer::setCamera(const MapCamera& camera) {
  if (camera == camera_) return;
  camera_ = camera;
  if (markers_.empty()) return;
  const QRegion before = covered();
  arrange();
  update(before | covered());
}

void MarkerLayer::add(const DrawnMarker& marker) {
  markers_.push_back(marker);
  pictures_.push_back(marker.image.isNull() ? MarkerPicture() : makeMarkerPicture(marker.image));
  disarrange();
}

void MarkerLayer::clear() {
  markers_.clear();
  pictures_.clear();
  disarrange();
}

void MarkerLayer::paintEvent(QPaintEvent*) {
  if (pin_.image.devicePixelRatio() != devicePixelRatioF()) isArranged_ = false;
  if (!isArranged_) arrange();
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  for (const Place& place : places_)
    painter.drawImage(place.symbol.topLeft(), pictureOf(place.marker).image);
  for (const Place& place : places_) {
    const QString& title = markers_[place.marker].title;
    if (!title.isEmpty()) drawPlate(painter, place.plate, title, font());
  }
}

void MarkerLayer::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) disarrange();
}

void MarkerLayer::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  disarrange();
}

const MarkerPicture& MarkerLayer::pictureOf(std::size_t marker) const {
  return pictures_[marker].image.isNull() ? pin_ : pictures_[marker];
}

void MarkerLayer::arrange() {
  isArranged_ = true;
  const double ratio = devicePixelRatioF();
  if (pin_.image.isNull() || pin_.image.devicePixelRatio() != ratio) pin_ = makePin(ratio);
  places_.clear();
  for (std::size_t i = 0; i < markers_.size(); ++i) {
    const MarkerPicture& picture = pictureOf(i);
    const QPointF position = viewPosition(camera_, size(), markers_[i].coordinate);
    if (!std::isfinite(position.x()) || !std::isfinite(position.y())) continue;
    const QSizeF symbol = QSizeF(picture.image.size()) / picture.image.devicePixelRatio();
    places_.push_back({i, QRectF(snapped(position - picture.anchor, ratio), symbol), QRectF()});
  }
  std::vector<const Place*> inView;
  for (const Place& place : places_) {
    if (inView.size() == maximumAvoided) break;
    if (place.symbol.intersects(rect())) inView.push_back(&place);
  }
  for (Place& place : places_) {
    if (!markers_[place.marker].title.isEmpty()) arrangePlate(place, inView);
  }
}

void MarkerLayer::arrangePlate(Place& place, const std::vector<const Place*>& avoided) {
  const QSizeF size = plateSize(markers_[place.marker].title, font(), width());
  const bool isInView = std::find(avoided.begin(), avoided.end(), &place) != avoided.end();
  const auto candidates = placesFor(size, place.symbol, width());
  double best = 0;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    double cost = static_cast<double>(i);
    if (!QRectF(rect()).contains(candidates[i])) cost += outOfView;
    for (const Place* const other : avoided) {
      if (other == &place) continue;
      if (other->plate.intersects(candidates[i])) cost += onATitle;
      if (other->symbol.intersects(candidates[i])) cost += onASymbol;
    }
    if (i > 0 && cost >= best) continue;
    best = cost;
    place.plate = QRectF(snapped(candidates[i].topLeft(), devicePixelRatioF()), size);
    // Nobody sees where the others are.
    if (!isInView) return;
  }
}

void MarkerLayer::disarrange() {
  isArranged_ = false;
  update();
}

QRegion MarkerLayer::covered() const {
  if (places_.size() > maximumAvoided) return rect();
  QRegion region;
  for (const Place& place : places_) {
    region |= place.symbol.toAlignedRect();
    region |= place.plate.toAlignedRect();
  }
  return region & rect();
}

}  // namespace quorvelkit
