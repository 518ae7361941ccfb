// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFont>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QString>

class QPainter;

namespace quorvelkit {

struct MarkerPicture {
  QImage image;
  /// The point of the picture that stands on the marker's position, in device-independent pixels.
  QPointF anchor;
};

/// The standard marker, its tip on the position.
MarkerPicture makePin(double devicePixelRatio);
/// An application's own picture, its middle on the position.
MarkerPicture makeMarkerPicture(const QImage& image);

/// A title on a light plate. A title that would be broader than that is elided.
QSizeF plateSize(const QString& title, const QFont& font, double maximumWidth);
void drawPlate(QPainter& painter, const QRectF& plate, const QString& title, const QFont& font);

}  // namespace quorvelkit
