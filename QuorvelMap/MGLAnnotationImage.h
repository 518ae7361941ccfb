// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QImage>
#include <string>
#include <utility>

namespace quorvelkit {

/// The picture of a marker, drawn with its middle on the marker's position. Its size on screen is
/// that of the picture divided by QImage::devicePixelRatio(). A null picture stands for the pin.
class MGLAnnotationImage {
 public:
  /// The identifier is the application's own name for the picture; the map view does not read it.
  explicit MGLAnnotationImage(QImage image, std::string reuseIdentifier = {})
      : image_(std::move(image)), reuseIdentifier_(std::move(reuseIdentifier)) {}

  const QImage& image() const { return image_; }
  const std::string& reuseIdentifier() const { return reuseIdentifier_; }

 private:
  QImage image_;
  std::string reuseIdentifier_;
};

}  // namespace quorvelkit
