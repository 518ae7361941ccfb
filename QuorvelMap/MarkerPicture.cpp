// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MarkerPicture_p.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace quorvelkit {

namespace {

constexpr double gap = 3;
constexpr QSizeF pinSize(26, 36);
constexpr QSizeF platePadding(7, 3);

// A disc that runs out into a tip below, in a box of pinSize with a margin for its outline.
void drawPin(QPainter& painter, const QRectF& box) {
  const QPointF tip(box.center().x(), box.bottom());
  const double radius = box.width() / 2 - 1.5;
  const QPointF middle(tip.x(), box.top() + radius + 1.5);
  QPainterPath path(tip);
  path.cubicTo(tip + QPointF(-3, -9), middle + QPointF(-radius, 9), middle + QPointF(-radius, 0));
  path.arcTo(QRectF(middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius), 180, -180);
  path.cubicTo(middle + QPointF(radius, 9), tip + QPointF(3, -9), tip);
  painter.setPen(QPen(Qt::white, 1.5));
  painter.setBrush(QColor(0xd6, 0x33, 0x3f));
  painter.drawPath(path);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.drawEllipse(middle, radius * 0.4, radius * 0.4);
}

void drawPlate(QPainter& painter, const QRectF& plate, const QString& title) {
  painter.setPen(QPen(QColor(0x60, 0x60, 0x60), 1));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(plate.adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  painter.setPen(QColor(0x20, 0x20, 0x20));
  painter.drawText(plate, Qt::AlignCenter | Qt::TextSingleLine, title);
}

}  // namespace

MarkerPicture makeMarkerPicture(const QImage& image, const QString& title, int row,
                                const QFont& font, double devicePixelRatio) {
  const QSizeF symbol = image.isNull() ? pinSize : QSizeF(image.size()) / image.devicePixelRatio();
  QSizeF plate(0, 0);
  double above = 0;
  if (!title.isEmpty()) {
    const QFontMetricsF metrics(font);
    plate = QSizeF(std::ceil(metrics.horizontalAdvance(title) + 2 * platePadding.width()),
                   std::ceil(metrics.height() + 2 * platePadding.height()));
    above = (plate.height() + gap) * (row + 1);
  }
  const QSizeF size(std::max(symbol.width(), plate.width()), symbol.height() + above);
  const QRectF symbolBox(QPointF((size.width() - symbol.width()) / 2, above), symbol);

  MarkerPicture result;
  result.image = QImage((size * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
  result.image.setDevicePixelRatio(devicePixelRatio);
  result.image.fill(Qt::transparent);
  result.anchor =
      image.isNull() ? QPointF(symbolBox.center().x(), symbolBox.bottom()) : symbolBox.center();

  QPainter painter(&result.image);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  if (image.isNull()) {
    drawPin(painter, symbolBox);
  } else {
    painter.drawImage(symbolBox, image);
  }
  if (!title.isEmpty()) {
    painter.setFont(font);
    drawPlate(painter, QRectF(QPointF((size.width() - plate.width()) / 2, 0), plate), title);
  }
  return result;
}

}  // namespace quorvelkit
