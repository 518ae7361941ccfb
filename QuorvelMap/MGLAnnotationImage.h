// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <QImage>
#include <string>
#include <utility>

namespace quorvelkit {

/// The image of a marker. Its center is at the marker's coordinate. Its size on the screen is the
/// size of the QImage divided by QImage::devicePixelRatio(). A null image means the standard pin.
class MGLAnnotationImage {
 public:
  /// The identifier is a name for use by the application. The map view does not read it.
  explicit MGLAnnotationImage(QImage image, std::string reuseIdentifier = {})
      : image_(std::move(image)), reuseIdentifier_(std::move(reuseIdentifier)) {}

  /// The image, and the identifier.
  const QImage& image() const { return image_; }
  const std::string& reuseIdentifier() const { return reuseIdentifier_; }

 private:
  QImage image_;
  std::string reuseIdentifier_;
};

}  // namespace quorvelkit
