// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace quorvelkit::test {

/// The application object of one test. With a screen it runs on an X server with software OpenGL,
/// started for it alone where DISPLAY names none; without one Qt draws in memory and has no OpenGL.
class TestApplication {
 public:
  enum class Screen { x11, none };

  explicit TestApplication(Screen screen = Screen::x11);
  ~TestApplication();

  /// From now on Qt loads plugins only from a folder that lacks the named one
  /// ("sqldrivers/libqsqlite.so").
  void hidePlugin(const QString& hidden);

  /// A fresh folder for the test's files; HOME and the caches are in it.
  QString folder() const { return home_.path(); }
  /// Writes a file into it.
  QUrl file(const char* name, const QByteArray& text) const;

 private:
  void startDisplayServer();

  QTemporaryDir home_;
  QProcess server_;
  std::unique_ptr<QApplication> application_;
};

/// Lets events run until the condition holds; false after a generous time.
bool waitUntil(const std::function<bool()>& condition);

/// What the widget shows at a place, and whether two colours are alike to within 4 of 255.
QColor colorAt(QWidget& widget, QPointF place);
bool isAlike(const QColor& a, const QColor& b);

/// Waits until the view shows the colour at the position, moved by an offset in pixels; on a
/// time-out says what is there and leaves the picture in a file.
testing::AssertionResult shows(MGLMapView& view, Coordinate position, const QColor& color,
                               QPointF offset = {});

/// Gives what it is told to give and notes with which view it was asked.
struct Looks : MGLMapViewDelegate {
  std::optional<MGLAnnotationImage> image;
  std::optional<double> width;
  std::optional<QColor> color;
  std::optional<double> alpha;
  std::vector<const MGLMapView*> askers;

  std::optional<MGLAnnotationImage> imageForAnnotation(MGLMapView& view,
                                                       const MGLAnnotation&) override {
    askers.push_back(&view);
    return image;
  }
  std::optional<double> lineWidthForPolylineAnnotation(MGLMapView& view,
                                                       const MGLPolyline&) override {
    askers.push_back(&view);
    return width;
  }
  std::optional<QColor> strokeColorForShapeAnnotation(MGLMapView& view,
                                                      const MGLAnnotation&) override {
    askers.push_back(&view);
    return color;
  }
  std::optional<double> alphaForShapeAnnotation(MGLMapView& view, const MGLAnnotation&) override {
    askers.push_back(&view);
    return alpha;
  }
};

/// A picture of one colour.
QImage filledImage(const QSize& size, const QColor& color);
QByteArray styleWithGround(const char* color);

inline std::shared_ptr<MGLPolyline> makeLine(std::vector<Coordinate> coordinates) {
  return std::make_shared<MGLPolyline>(std::move(coordinates));
}
std::shared_ptr<MGLPointAnnotation> makeMarker(Coordinate coordinate, const char* title);

inline const QColor plainGround(0xec, 0xe9, 0xe2), pinColor(0xd6, 0x33, 0x3f);

}  // namespace quorvelkit::test
