// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MarkerImage_p.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace quorvelkit {

namespace {

constexpr QSizeF pinSize(26, 36);
constexpr double borderWidth = 1.5;
constexpr QSizeF labelPadding(7, 3);

// A circle with a tip at the bottom. The border is inside the box on all sides, also at the tip.
void drawPin(QPainter& painter, const QRectF& box) {
  const QPointF tip(box.center().x(), box.bottom() - borderWidth);
  const double radius = box.width() / 2 - borderWidth;
  const QPointF center(tip.x(), box.top() + radius + borderWidth);
  QPainterPath path(tip);
  path.cubicTo(tip + QPointF(-3, -9), center + QPointF(-radius, 9), center + QPointF(-radius, 0));
  path.arcTo(QRectF(center.x() - radius, center.y() - radius, 2 * radius, 2 * radius), 180, -180);
  path.cubicTo(center + QPointF(radius, 9), tip + QPointF(3, -9), tip);
  path.closeSubpath();
  painter.setPen(QPen(Qt::white, borderWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(QColor(0xd6, 0x33, 0x3f));
  painter.drawPath(path);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.drawEllipse(center, radius * 0.4, radius * 0.4);
}

}  // namespace

MarkerImage makePinImage(double devicePixelRatio) {
  QImage image((pinSize * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(devicePixelRatio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  drawPin(painter, QRectF(QPointF(), pinSize));
  return {image, QPointF(pinSize.width() / 2, pinSize.height())};
}

MarkerImage makeMarkerImage(const QImage& image) {
  const QSizeF size = QSizeF(image.size()) / image.devicePixelRatio();
  return {image, QPointF(size.width() / 2, size.height() / 2)};
}

QSizeF labelSize(const QString& title, const QFont& font, double maximumWidth) {
  const QFontMetricsF metrics(font);
  const double width = std::ceil(metrics.horizontalAdvance(title) + 2 * labelPadding.width());
  return {std::min(width, std::floor(maximumWidth)),
          std::ceil(metrics.height() + 2 * labelPadding.height())};
}

void drawLabel(QPainter& painter, const QRectF& label, const QString& title, const QFont& font) {
  painter.setPen(QPen(QColor(0x60, 0x60, 0x60), 1));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(label.adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  painter.setPen(QColor(0x20, 0x20, 0x20));
  painter.setFont(font);
  const double availableWidth = std::max(label.width() - 2 * labelPadding.width(), 0.0);
  // Allows a rounding error of half a pixel.
  const QString shown = QFontMetricsF(font).elidedText(title, Qt::ElideRight, availableWidth + 0.5);
  painter.drawText(label, Qt::AlignCenter | Qt::TextSingleLine, shown);
}

}  // namespace quorvelkit
