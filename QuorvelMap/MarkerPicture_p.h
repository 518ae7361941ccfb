// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFont>
#include <QImage>
#include <QPointF>
#include <QString>

namespace quorvelkit {

struct MarkerPicture {
  QImage image;
  /// The point of the picture that stands on the marker's position, in device-independent pixels.
  QPointF anchor;
};

/// A marker with its title on a light plate above it: the given image with its middle on the
/// position, or with a null image a pin with its tip there. `row` lifts the plate that many times
/// its own height, for markers that share a position.
MarkerPicture makeMarkerPicture(const QImage& image, const QString& title, int row,
                                const QFont& font, double devicePixelRatio);

}  // namespace quorvelkit
