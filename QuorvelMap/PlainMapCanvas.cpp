// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/LineOutline_p.h>
#include <QuorvelMap/PlainMapCanvas_p.h>

#include <QPainter>
#include <QPointer>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvelkit {

namespace {

// The minimum distance between two points of a painted line, in device-independent pixels.
constexpr double minimumStep = 0.25;

class PlainWidget : public QWidget {
 public:
  PlainWidget(QWidget* parent, CameraChangedHandler cameraChanged)
      : QWidget(parent), cameraChanged_(std::move(cameraChanged)) {}

  const MapCamera& camera() const { return camera_; }

  void setCamera(const MapCamera& camera) {
    camera_ = camera;
    camera_.zoomLevel = std::clamp(camera.zoomLevel, minimumZoomLevel, maximumZoomLevel);
    camera_ = clampedToWorld(camera_, height());
    update();
    cameraChanged_();
  }

  std::vector<DrawnLine> lines;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QWidget::resizeEvent(event);
    setCamera(camera_);
  }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0xec, 0xe9, 0xe2));
    painter.setRenderHint(QPainter::Antialiasing);
    for (const DrawnLine& line : lines) {
      for (const auto& piece : line.pieces) {
        const QPolygonF points = polygon(piece);
        const QRectF bounds = points.boundingRect().adjusted(-line.width, 0, line.width, 0);
        const QPainterPath outline = outlineOf(points, line.width);
        const double world = worldWidth(camera_.zoomLevel);
        // Paints the piece in each visible copy of the world.
        double copy = -std::floor(bounds.right() / world) * world;
        while (bounds.left() + copy <= width()) {
          painter.fillPath(outline.translated(copy, 0), line.color);
          copy += world;
        }
      }
    }
  }

 private:
  // The points of a piece, in the copy of the world in which the first point is nearest to the
  // center of the view. Leaves out points that are too near to the point before.
  QPolygonF polygon(const std::vector<Coordinate>& piece) const {
    const QPointF first = worldPosition(piece.front());
    const QPointF start = viewPosition(camera_, size(), piece.front());
    const double scale = worldWidth(camera_.zoomLevel);
    QPolygonF points;
    points.reserve(static_cast<int>(piece.size()));
    for (const Coordinate& coordinate : piece) {
      const QPointF point = start + (worldPosition(coordinate) - first) * scale;
      const bool isLast = &coordinate == &piece.back();
      if (!isLast && !points.isEmpty() && (point - points.back()).manhattanLength() < minimumStep)
        continue;
      points << point;
    }
    return points;
  }

  const CameraChangedHandler cameraChanged_;
  MapCamera camera_;
};

class PlainMapCanvas : public MapCanvas {
 public:
  PlainMapCanvas(QWidget* parent, CameraChangedHandler cameraChanged)
      : widget_(new PlainWidget(parent, std::move(cameraChanged))) {}
  ~PlainMapCanvas() override { delete widget_; }

  QWidget* widget() override { return widget_; }
  MapCamera camera() const override { return widget_->camera(); }
  void setCamera(const MapCamera& camera) override { widget_->setCamera(camera); }
  void add(const DrawnLine& line) override {
    widget_->lines.push_back(line);
    widget_->update();
  }
  void clear() override {
    widget_->lines.clear();
    widget_->update();
  }

 private:
  QPointer<PlainWidget> widget_;
};

}  // namespace

std::unique_ptr<MapCanvas> makePlainMapCanvas(QWidget* parent, CameraChangedHandler cameraChanged) {
  return std::make_unique<PlainMapCanvas>(parent, std::move(cameraChanged));
}

}  // namespace quorvelkit
