// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/PlainMapCanvas_p.h>

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWheelEvent>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace quorvelkit {

namespace {

class PlainWidget : public QWidget {
 public:
  explicit PlainWidget(QWidget* parent) : QWidget(parent) {}

  const MapCamera& camera() const { return camera_; }

  void setCamera(const MapCamera& camera) {
    camera_ = camera;
    camera_.zoomLevel = std::clamp(camera.zoomLevel, minimumZoomLevel, maximumZoomLevel);
    update();
  }

  std::vector<DrawnLine> lines;
  std::vector<DrawnMarker> markers;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0xec, 0xe9, 0xe2));
    painter.setRenderHint(QPainter::Antialiasing);
    for (const DrawnLine& line : lines) {
      painter.setPen(QPen(line.color, line.width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
      for (const auto& piece : line.pieces) {
        const QPolygonF points = polygon(piece);
        const double world = worldWidth(camera_.zoomLevel);
        for (const double copy : {-world, 0.0, world}) {
          const QRectF bounds = points.boundingRect().translated(copy, 0);
          if (bounds.left() <= width() && bounds.right() >= 0) {
            painter.drawPolyline(points.translated(copy, 0));
          }
        }
      }
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const DrawnMarker& marker : markers) {
      painter.drawImage(viewPosition(camera_, size(), marker.coordinate) - marker.anchor,
                        marker.picture);
    }
  }

  void mousePressEvent(QMouseEvent* event) override { grabbed_ = event->localPos(); }

  void mouseMoveEvent(QMouseEvent* event) override {
    moveTo(coordinateAtViewPosition(camera_, size(), middle() + grabbed_ - event->localPos()));
    grabbed_ = event->localPos();
  }

  // Zooms about the position under the mouse.
  void wheelEvent(QWheelEvent* event) override {
    const Coordinate under = coordinateAtViewPosition(camera_, size(), event->position());
    setCamera({camera_.center, camera_.zoomLevel + event->angleDelta().y() / 480.0});
    const QPointF drift = viewPosition(camera_, size(), under) - event->position();
    moveTo(coordinateAtViewPosition(camera_, size(), middle() + drift));
    event->accept();
  }

 private:
  QPointF middle() const { return QRectF(rect()).center(); }
  void moveTo(Coordinate center) { setCamera({center, camera_.zoomLevel}); }

  // The piece in the copy of the world in which its first position is nearest to the middle.
  QPolygonF polygon(const std::vector<Coordinate>& piece) const {
    const QPointF first = worldPosition(piece.front());
    const QPointF start = viewPosition(camera_, size(), piece.front());
    const double scale = worldWidth(camera_.zoomLevel);
    QPolygonF points;
    points.reserve(static_cast<int>(piece.size()));
    for (const Coordinate& coordinate : piece) {
      points << start + (worldPosition(coordinate) - first) * scale;
    }
    return points;
  }

  MapCamera camera_;
  QPointF grabbed_;
};

class PlainMapCanvas : public MapCanvas {
 public:
  explicit PlainMapCanvas(QWidget* parent) : widget_(new PlainWidget(parent)) {}
  ~PlainMapCanvas() override { delete widget_; }

  QWidget* widget() override { return widget_; }
  MapCamera camera() const override { return widget_->camera(); }
  void setCamera(const MapCamera& camera) override { widget_->setCamera(camera); }
  void add(const DrawnLine& line) override {
    widget_->lines.push_back(line);
    widget_->update();
  }
  void add(const DrawnMarker& marker) override {
    widget_->markers.push_back(marker);
    widget_->update();
  }
  void clear() override {
    widget_->lines.clear();
    widget_->markers.clear();
    widget_->update();
  }

 private:
  QPointer<PlainWidget> widget_;
};

}  // namespace

std::unique_ptr<MapCanvas> makePlainMapCanvas(QWidget* parent) {
  return std::make_unique<PlainMapCanvas>(parent);
}

}  // namespace quorvelkit
