// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFont>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QString>

class QPainter;

namespace quorvelkit {

struct MarkerImage {
  QImage image;
  /// The point of the image at the marker's coordinate, in device-independent pixels.
  QPointF anchor;
};

/// The standard pin. The anchor is its tip.
MarkerImage makePinImage(double devicePixelRatio);
/// An image of the application. The anchor is its center.
MarkerImage makeMarkerImage(const QImage& image);

/// The size of a label: a title on a white rectangle. A title that is wider than the maximum is
/// shortened. Units: device-independent pixels.
QSizeF labelSize(const QString& title, const QFont& font, double maximumWidth);
void drawLabel(QPainter& painter, const QRectF& label, const QString& title, const QFont& font);

}  // namespace quorvelkit
