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
constexpr int padding = 6;
constexpr int tickHeight = 5;
constexpr double maximumLength = ScaleBar::maximumWidth - 2 * padding;

// The largest of ..., 1, 2, 5, 10, 20, ... that is at most the value.
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
  showScale(0, 0);
}

void ScaleBar::showScale(double latitude, double zoomLevel) {
  // The map ends at 85 degrees.
  const double radians = std::clamp(latitude, -85.0, 85.0) * std::numbers::pi / 180;
  const double metersPerPixel = earthCircumference * std::cos(radians) / worldWidth(zoomLevel);
  if (metersPerPixel == metersPerPixel_) return;
  metersPerPixel_ = metersPerPixel;
  updateDistance();
}

void ScaleBar::updateDistance() {
  const bool isMetric = locale().measurementSystem() == QLocale::MetricSystem;
  const double small = isMetric ? 1 : metersPerFoot;
  const double large = isMetric ? 1000 : metersPerFoot * feetPerMile;
  const double maximumDistance = maximumLength * metersPerPixel_;
  const bool isLarge = maximumDistance >= large;
  const double unit = isLarge ? large : small;
  const double count = roundedDown(maximumDistance / unit);
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
  const bool changesText =
      event->type() == QEvent::LocaleChange || event->type() == QEvent::FontChange;
  if (changesText && metersPerPixel_ > 0) updateDistance();
}

void ScaleBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor background = palette().color(QPalette::Base);
  background.setAlpha(200);
  painter.setPen(Qt::NoPen);
  painter.setBrush(background);
  painter.drawRoundedRect(rect(), 4, 4);
  painter.setPen(QPen(palette().color(QPalette::Text), 2));
  const double right = padding + length_;
  const double bottom = height() - padding;
  painter.drawPolyline(QPolygonF({QPointF(padding, bottom - tickHeight), QPointF(padding, bottom),
                                  QPointF(right, bottom), QPointF(right, bottom - tickHeight)}));
  painter.drawText(QRectF(0, 3, width(), fontMetrics().height()), Qt::AlignCenter, text_);
}

}  // namespace quorvelkit
