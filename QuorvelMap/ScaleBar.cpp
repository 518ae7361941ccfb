// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/ScaleBar_p.h>
#include <QuorvelMap/WebMercator_p.h>

#include <QEvent>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvelkit {

namespace {

constexpr double earthCircumference = 40075016.686;
constexpr double metersPerFoot = 0.3048;
constexpr double feetPerMile = 5280;
// In device-independent pixels.
constexpr double maximumLength = 120;
constexpr int padding = 6;
constexpr int tickHeight = 5;

// The largest of 1, 2, 5, 10, 20, ... that is not above the value.
double roundedDown(double value) {
  const double power = std::pow(10, std::floor(std::log10(value)));
  for (const double digit : {5.0, 2.0}) {
    if (digit * power <= value) return digit * power;
  }
  return power;
}

}  // namespace

ScaleBar::ScaleBar(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("scaleBar"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAccessibleName(MGLMapView::tr("Scale"));
}

void ScaleBar::showScale(double latitude, double zoomLevel) {
  // At the poles the map has no scale; its edge is at 85 degrees.
  const double shown = std::clamp(latitude, -85.0, 85.0) * std::numbers::pi / 180;
  const double metersPerPixel = earthCircumference * std::cos(shown) / worldWidth(zoomLevel);
  if (metersPerPixel == metersPerPixel_) return;
  metersPerPixel_ = metersPerPixel;
  chooseDistance();
}

void ScaleBar::chooseDistance() {
  const bool isMetric = locale().measurementSystem() == QLocale::MetricSystem;
  const double small = isMetric ? 1 : metersPerFoot;
  const double large = isMetric ? 1000 : metersPerFoot * feetPerMile;
  const double longest = maximumLength * metersPerPixel_;
  const bool isLarge = longest >= large;
  const double unit = isLarge ? large : small;
  const double count = roundedDown(longest / unit);
  const char* const name = isMetric ? (isLarge ? "km" : "m") : (isLarge ? "mi" : "ft");
  text_ = locale().toString(count, 'f', count < 1 ? 1 : 0) + u' ' + QLatin1String(name);
  length_ = count * unit / metersPerPixel_;
  setAccessibleDescription(text_);
  resize(static_cast<int>(std::lround(length_)) + 2 * padding,
         fontMetrics().height() + tickHeight + 2 * padding);
  update();
}

void ScaleBar::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  const bool matters = event->type() == QEvent::LocaleChange || event->type() == QEvent::FontChange;
  if (matters && metersPerPixel_ > 0) chooseDistance();
}

void ScaleBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor plate = palette().color(QPalette::Base);
  plate.setAlpha(200);
  painter.setPen(Qt::NoPen);
  painter.setBrush(plate);
  painter.drawRoundedRect(rect(), 4, 4);
  painter.setPen(QPen(palette().color(QPalette::Text), 2));
  const double right = padding + length_;
  const double bottom = height() - padding;
  painter.drawPolyline(QPolygonF({QPointF(padding, bottom - tickHeight), QPointF(padding, bottom),
                                  QPointF(right, bottom), QPointF(right, bottom - tickHeight)}));
  painter.drawText(QRectF(0, 3, width(), fontMetrics().height()), Qt::AlignCenter, text_);
}

}  // namespace quorvelkit
