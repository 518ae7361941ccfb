// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MarkerPicture_p.h>
#include <QuorvelMap/WebMercator_p.h>

#include <QRegion>
#include <QString>
#include <QWidget>
#include <vector>

namespace quorvelkit {

/// A marker with its looks.
struct DrawnMarker {
  Coordinate coordinate;
  /// Null: the standard pin.
  QImage image;
  QString title;
};

/// The markers and their titles, above the canvas and the same for every engine. Lets all input
/// through.
///
/// Symbols stand on whole pixels. A title stands above its symbol where there is room; where
/// another title or the view's edge is in the way, higher, below, or beside it, and it stays in
/// view as long as its symbol does. With more than 200 markers in view the titles of the others
/// stand above them whatever is there.
class MarkerLayer : public QWidget {
 public:
  explicit MarkerLayer(QWidget* parent);

  void setCamera(const MapCamera& camera);
  void add(const DrawnMarker& marker);
  void clear();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // What a marker covers in the view, in device-independent pixels.
  struct Place {
    std::size_t marker = 0;
    QRectF symbol;
    QRectF plate;
  };

  const MarkerPicture& pictureOf(std::size_t marker) const;
  void arrange();
  void arrangePlate(Place& place, const std::vector<const Place*>& avoided);
  void disarrange();
  QRegion covered() const;

  MapCamera camera_;
  std::vector<DrawnMarker> markers_;
  std::vector<MarkerPicture> pictures_;
  MarkerPicture pin_;
  std::vector<Place> places_;
  bool isArranged_ = false;
};

}  // namespace quorvelkit
