// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MarkerImage_p.h>
#include <QuorvelMap/WebMercator_p.h>

#include <QRegion>
#include <QString>
#include <QWidget>
#include <vector>

namespace quorvelkit {

/// A marker with its appearance.
struct DrawnMarker {
  Coordinate coordinate;
  /// Null: the standard pin.
  QImage image;
  QString title;
};

/// Draws the markers and their labels above the canvas, in the same way for all engines. Ignores
/// mouse events.
///
/// Marker images are aligned to whole pixels. A label stands above its marker. If it would overlap
/// another marker, an obstacle or the edge of the view there, it is moved to the left or right, or
/// stands higher, below or beside its marker. A label is in the view if its marker is. Only the
/// first 200 markers in the view are taken into account; the labels of the others always stand
/// above them.
class MarkerLayer : public QWidget {
 public:
  explicit MarkerLayer(QWidget* parent);

  void setCamera(const MapCamera& camera);
  /// The areas of the view that labels avoid.
  void setObstacles(const std::vector<QRect>& obstacles);
  void add(const DrawnMarker& marker);
  void clear();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // The area of a marker in the view, in device-independent pixels.
  struct Placement {
    std::size_t marker = 0;
    QRectF image;
    QRectF label;
  };

  const MarkerImage& imageOf(std::size_t marker) const;
  void layOut();
  void placeLabel(Placement& placement, const std::vector<const Placement*>& avoided);
  void invalidateLayout();
  QRegion coveredRegion() const;

  MapCamera camera_;
  std::vector<QRect> obstacles_;
  std::vector<DrawnMarker> markers_;
  std::vector<MarkerImage> images_;
  MarkerImage pinImage_;
  std::vector<Placement> placements_;
  bool isLaidOut_ = false;
};

}  // namespace quorvelkit
