// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MarkerPicture_p.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace quorvelkit {

namespace {

constexpr QSizeF pinSize(26, 36);
constexpr double rimWidth = 1.5;
constexpr QSizeF platePadding(7, 3);

// A disc that runs out into a tip below. The rim lies inside the box on all sides, at the tip too.
void drawPin(QPainter& painter, const QRectF& box) {
  const QPointF tip(box.center().x(), box.bottom() - rimWidth);
  const double radius = box.width() / 2 - rimWidth;
  const QPointF middle(tip.x(), box.top() + radius + rimWidth);
  QPainterPath path(tip);
  path.cubicTo(tip + QPointF(-3, -9), middle + QPointF(-radius, 9), middle + QPointF(-radius, 0));
  path.arcTo(QRectF(middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius), 180, -180);
  path.cubicTo(middle + QPointF(radius, 9), tip + QPointF(3, -9), tip);
  path.closeSubpath();
  painter.setPen(QPen(Qt::white, rimWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(QColor(0xd6, 0x33, 0x3f));
  painter.drawPath(path);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.drawEllipse(middle, radius * 0.4, radius * 0.4);
}

}  // namespace

MarkerPicture makePin(double devicePixelRatio) {
  QImage image((pinSize * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(devicePixelRatio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  drawPin(painter, QRectF(QPointF(), pinSize));
  return {image, QPointF(pinSize.width() / 2, pinSize.height())};
}

MarkerPicture makeMarkerPicture(const QImage& image) {
  const QSizeF size = QSizeF(image.size()) / image.devicePixelRatio();
  return {image, QPointF(size.width() / 2, size.height() / 2)};
}

QSizeF plateSize(const QString& title, const QFont& font, double maximumWidth) {
  const QFontMetricsF metrics(font);
  const double width = std::ceil(metrics.horizontalAdvance(title) + 2 * platePadding.width());
  return {std::min(width, std::floor(maximumWidth)),
          std::ceil(metrics.height() + 2 * platePadding.height())};
}

void drawPlate(QPainter& painter, const QRectF& plate, const QString& title, const QFont& font) {
  painter.setPen(QPen(QColor(0x60, 0x60, 0x60), 1));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(plate.adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  painter.setPen(QColor(0x20, 0x20, 0x20));
  painter.setFont(font);
  const double room = std::max(plate.width() - 2 * platePadding.width(), 0.0);
  // A whole title fits to within a rounding.
  const QString shown = QFontMetricsF(font).elidedText(title, Qt::ElideRight, room + 0.5);
  painter.drawText(plate, Qt::AlignCenter | Qt::TextSingleLine, shown);
}

}  // namespace quorvelkit
