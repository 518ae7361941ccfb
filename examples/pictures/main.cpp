// SPDX-License-Identifier: Apache-2.0
// quorvel-map-pictures DIR ENGINE
//   Draws each route whose scale factor is the current one (QT_SCALE_FACTOR) and saves it as
//   DIR/NUMBER-ENGINE.png. ENGINE is used in the file name only.
// quorvel-map-pictures DIR --sheet FILE.png
//   Combines all pictures of the folder into one.
#include "Routes.h"

#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QPixmap>
#include <iostream>
#include <memory>

using namespace quorvelkit;

namespace {

constexpr int usageError = 2;
constexpr QSize pictureSize(320, 220);
constexpr QRgb lineColor = 0xff3d86f5;
constexpr int labelHeight = 18;
constexpr int columns = 4;
constexpr int unchangedForMilliseconds = 1000;
constexpr int timeoutMilliseconds = 60000;

// A wide line with a dark outline.
struct OutlinedLineDelegate : MGLMapViewDelegate {
  bool isOutline = true;

  std::optional<double> lineWidthForPolylineAnnotation(MGLMapView&, const MGLPolyline&) override {
    return isOutline ? 11 : 6;
  }
  std::optional<QColor> strokeColorForShapeAnnotation(MGLMapView&, const MGLAnnotation&) override {
    return isOutline ? QColor(0x12, 0x3f, 0x9c) : QColor(lineColor);
  }
};

std::shared_ptr<MGLPointAnnotation> marker(const char* title, Coordinate coordinate) {
  auto made = std::make_shared<MGLPointAnnotation>();
  made->setTitle(title);
  made->setCoordinate(coordinate);
  return made;
}

bool hasLine(const QImage& picture) {
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      if (picture.pixel(x, y) == lineColor) return true;
  return false;
}

// Waits until the view shows its line and has not changed for a second.
QImage pictureOf(MGLMapView& view, bool isLineExpected) {
  QElapsedTimer total;
  QElapsedTimer unchanged;
  total.start();
  unchanged.start();
  QImage last;
  while (!unchanged.hasExpired(unchangedForMilliseconds) &&
         !total.hasExpired(timeoutMilliseconds)) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    const QImage picture = view.grab().toImage();
    if (picture != last || (isLineExpected && !hasLine(picture))) unchanged.restart();
    last = picture;
  }
  return last;
}

QString fileOf(const QString& folder, std::size_t number, const QString& engine) {
  return QStringLiteral("%1/%2-%3.png").arg(folder).arg(number).arg(engine);
}

bool draw(const QString& folder, const QString& engine) {
  const auto routes = picturedRoutes();
  for (std::size_t i = 0; i < routes.size(); ++i) {
    MGLMapView view(QRect(QPoint(), pictureSize));
    if (routes[i].scaleFactor != view.devicePixelRatioF()) continue;
    const auto delegate = std::make_shared<OutlinedLineDelegate>();
    view.setDelegate(delegate);
    if (!routes[i].points.empty()) {
      view.addAnnotations({std::make_shared<MGLPolyline>(routes[i].points)});
      delegate->isOutline = false;
      view.addAnnotations({marker("origin", routes[i].points.front()),
                           marker("destination", routes[i].points.back()),
                           std::make_shared<MGLPolyline>(routes[i].points)});
      view.showAnnotations();
    }
    view.show();
    if (!pictureOf(view, routes[i].points.size() > 1).save(fileOf(folder, i, engine))) return false;
    std::cout << routes[i].name << ": " << view.engineNote().toStdString() << '\n';
  }
  return true;
}

// Draws the pictures of both engines side by side, route after route, from left to right.
bool makeSheet(const QString& folder, const QString& file) {
  const QStringList engines = {"mapboxgl", "plain"};
  const auto routes = picturedRoutes();
  const int cells = static_cast<int>(routes.size()) * engines.size();
  const QSize cell(pictureSize.width() + 4, pictureSize.height() + labelHeight + 4);
  QImage sheet(cell.width() * columns, cell.height() * ((cells + columns - 1) / columns),
               QImage::Format_RGB32);
  sheet.fill(Qt::white);
  QPainter painter(&sheet);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  for (int i = 0; i < cells; ++i) {
    const auto route = static_cast<std::size_t>(i / engines.size());
    const QString& engine = engines[i % engines.size()];
    const QImage picture(fileOf(folder, route, engine));
    if (picture.isNull()) return false;
    const QPoint corner(i % columns * cell.width(), i / columns * cell.height());
    painter.drawText(QRect(corner, QSize(pictureSize.width(), labelHeight)), Qt::AlignCenter,
                     QStringLiteral("%1, %2").arg(routes[route].name, engine));
    // Scales down the pictures with scale factor 2.
    painter.drawImage(QRect(corner + QPoint(0, labelHeight), pictureSize), picture,
                      QRect(QPoint(), picture.size()));
  }
  return sheet.save(file);
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  const bool makesSheet = arguments.size() == 4 && arguments[2] == "--sheet";
  if (!makesSheet && arguments.size() != 3) {
    std::cerr << "quorvel-map-pictures: needs DIR ENGINE, or DIR --sheet FILE.png\n";
    return usageError;
  }
  const bool isDone =
      makesSheet ? makeSheet(arguments[1], arguments[3]) : draw(arguments[1], arguments[2]);
  if (!isDone) std::cerr << "quorvel-map-pictures: a picture cannot be read or written\n";
  return isDone ? 0 : 1;
}
