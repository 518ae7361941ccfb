// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/PlainMapCanvas_p.h>

#include <QPainter>
#include <QPointer>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvelkit {

namespace {

// In pixels.
constexpr double leastStep = 0.25;

class PlainWidget : public QWidget {
 public:
  PlainWidget(QWidget* parent, CanvasMovedHandler moved)
      : QWidget(parent), moved_(std::move(moved)) {}

  const MapCamera& camera() const { return camera_; }

  void setCamera(const MapCamera& camera) {
    camera_ = camera;
    camera_.zoomLevel = std::clamp(camera.zoomLevel, minimumZoomLevel, maximumZoomLevel);
    camera_ = keptInWorld(camera_, height());
    update();
    moved_();
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
      painter.setPen(QPen(line.color, line.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      for (const auto& piece : line.pieces) {
        const QPolygonF points = polygon(piece);
        const QRectF bounds = points.boundingRect().adjusted(-line.width, 0, line.width, 0);
        const double world = worldWidth(camera_.zoomLevel);
        // One for each copy of the world in which the piece is in view.
        for (double copy = -std::floor(bounds.right() / world) * world;
             bounds.left() + copy <= width(); copy += world) {
          painter.drawPolyline(points.translated(copy, 0));
        }
      }
    }
  }

 private:
  // The piece in the copy of the world in which its first position is nearest to the middle,
  // without the positions that nobody can tell from the one before.
  QPolygonF polygon(const std::vector<Coordinate>& piece) const {
    const QPointF first = worldPosition(piece.front());
    const QPointF start = viewPosition(camera_, size(), piece.front());
    const double scale = worldWidth(camera_.zoomLevel);
    QPolygonF points;
    points.reserve(static_cast<int>(piece.size()));
    for (const Coordinate& coordinate : piece) {
      const QPointF point = start + (worldPosition(coordinate) - first) * scale;
      const bool isLast = &coordinate == &piece.back();
      if (!isLast && !points.isEmpty() && (point - points.back()).manhattanLength() < leastStep)
        continue;
      points << point;
    }
    return points;
  }

  const CanvasMovedHandler moved_;
  MapCamera camera_;
};

class PlainMapCanvas : public MapCanvas {
 public:
  PlainMapCanvas(QWidget* parent, CanvasMovedHandler moved)
      : widget_(new PlainWidget(parent, std::move(moved))) {}
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

std::unique_ptr<MapCanvas> makePlainMapCanvas(QWidget* parent, CanvasMovedHandler moved) {
  return std::make_unique<PlainMapCanvas>(parent, std::move(moved));
}

}  // namespace quorvelkit
