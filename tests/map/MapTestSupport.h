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
#include <string>
#include <vector>

namespace quorvelkit::test {

/// The application object of one test. Screen::x11 uses the X server that DISPLAY names, or starts
/// one with software OpenGL. With Screen::none, Qt draws in memory and has no OpenGL.
class TestApplication {
 public:
  enum class Screen { x11, none };

  explicit TestApplication(Screen screen = Screen::x11);
  ~TestApplication();

  /// Hides a plugin such as "sqldrivers/libqsqlite.so" from Qt.
  void hidePlugin(const QString& hidden);

  /// A temporary folder for files, HOME and the caches.
  QString folder() const { return home_.path(); }
  /// Writes a file into folder().
  QUrl file(const char* name, const QByteArray& text) const;

 private:
  void startDisplayServer();

  QTemporaryDir home_;
  QProcess server_;
  std::unique_ptr<QApplication> application_;
};

/// A test that runs with the Mapbox GL engine and with the plain painter.
class EnginesTest : public testing::TestWithParam<TestApplication::Screen> {
 protected:
  TestApplication application_{GetParam()};
};
inline const auto bothEngines =
    testing::Values(TestApplication::Screen::none, TestApplication::Screen::x11);
inline std::string engineName(const testing::TestParamInfo<TestApplication::Screen>& test) {
  return test.param == TestApplication::Screen::x11 ? "mapboxgl" : "plain";
}

/// Runs the event loop until the condition is true. Returns false after 60 seconds.
bool waitUntil(const std::function<bool()>& condition);

/// The color that the widget shows at a point.
QColor colorAt(QWidget& widget, QPointF point);
/// True if red, green and blue differ by at most 4 of 255.
bool isAlike(const QColor& a, const QColor& b);

/// Waits until the view shows the color at the coordinate plus an offset in pixels. The failure
/// message contains the color that was found; the image is saved as MapTests-failure.png.
testing::AssertionResult shows(MGLMapView& view, Coordinate coordinate, const QColor& color,
                               QPointF offset = {});

/// Returns its members, records the view of each call and then calls `received`.
struct TestDelegate : MGLMapViewDelegate {
  std::optional<MGLAnnotationImage> image;
  std::optional<double> width;
  std::optional<QColor> color;
  std::optional<double> alpha;
  std::vector<const MGLMapView*> receivedViews;
  std::function<void()> received = [] {};

  std::optional<MGLAnnotationImage> imageForAnnotation(MGLMapView& view,
                                                       const MGLAnnotation&) override {
    return recorded(view, image);
  }
  std::optional<double> lineWidthForPolylineAnnotation(MGLMapView& view,
                                                       const MGLPolyline&) override {
    return recorded(view, width);
  }
  std::optional<QColor> strokeColorForShapeAnnotation(MGLMapView& view,
                                                      const MGLAnnotation&) override {
    return recorded(view, color);
  }
  std::optional<double> alphaForShapeAnnotation(MGLMapView& view, const MGLAnnotation&) override {
    return recorded(view, alpha);
  }

 private:
  template <class T>
  T recorded(MGLMapView& view, const T& value) {
    receivedViews.push_back(&view);
    received();
    return value;
  }
};

QImage filledImage(const QSize& size, const QColor& color);
QByteArray styleWithBackground(const char* color);

inline std::shared_ptr<MGLPolyline> makeLine(std::vector<Coordinate> coordinates) {
  return std::make_shared<MGLPolyline>(std::move(coordinates));
}
std::shared_ptr<MGLPointAnnotation> makeMarker(Coordinate coordinate, const char* title);

/// A view with a line through (0, 0) and a marker there.
struct RouteView : MGLMapView {
  RouteView();
  /// Expects that the view shows its annotations and that the note starts with the first text and
  /// contains the second.
  void expectRoute(const char* note, const char* reason);
  /// Waits until the note contains the text.
  void expectNote(const char* text);
};

/// Captures standard output, standard error and Qt's log, without Qt's messages about OpenGL.
class OutputCapture {
 public:
  OutputCapture();
  /// Ends the capture.
  std::string text() const;
};

inline constexpr const char* byMapboxgl = "Drawn by Qt Location's engine mapboxgl.";
inline constexpr const char* byPlainPainter = "Drawn without a map, on a plain background.";
inline const QColor plainBackground(0xec, 0xe9, 0xe2), pinColor(0xd6, 0x33, 0x3f);

}  // namespace quorvelkit::test
