// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"

#include <QtTest/QTest>

#include <QLabel>
#include <algorithm>

namespace quorvelkit::test {

namespace {

using Screen = TestApplication::Screen;

// Counts complete labels: two horizontal edges of equal length with vertical edges at both ends.
std::size_t countLabels(const QImage& picture) {
  const auto isEdge = [&](int x, int y) {
    return picture.valid(x, y) && isAlike(picture.pixelColor(x, y), QColor(0x60, 0x60, 0x60));
  };
  std::vector<QRect> runs;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0, first = 0; x <= picture.width(); ++x) {
      if (isEdge(x, y)) continue;
      if (x - first >= 10) runs.emplace_back(first, y, x - first, 1);
      first = x + 1;
    }
  }
  std::size_t labels = 0;
  for (auto top = runs.begin(); top != runs.end(); ++top) {
    const auto bottom = std::find_if(top + 1, runs.end(), [&](const QRect& run) {
      return run.left() == top->left() && run.right() == top->right() && run.y() - top->y() > 10;
    });
    if (bottom == runs.end()) continue;
    // The corners are rounded, so the vertical edges are outside the horizontal ones.
    const int middle = (top->y() + bottom->y()) / 2;
    bool left = false, right = false;
    for (int i = 0; i <= 6; ++i) {
      left = left || isEdge(top->left() - i, middle);
      right = right || isEdge(top->right() + i, middle);
    }
    labels += left && right ? 1 : 0;
    *bottom = QRect();
  }
  return labels;
}

struct MarkersCase {
  const char* name;
  // In pixels.
  std::vector<QPointF> points;
  const char* title = "origin";
  // The number of pins that are completely visible.
  int visiblePins = 0;
};

TEST(MapLabelTest, LabelsAreCompleteInsideViewAndDoNotOverlap) {
  const MarkersCase table[] = {
      {"at a pixel", {{300, 200}}, "origin", 1},
      {"between pixels", {{300.5, 200.5}, {100.3, 100.7}, {450.75, 300.25}}},
      {"at the same coordinate", {{300, 200}, {300, 200}, {300, 200}}},
      {"near each other", {{300, 200}, {312, 203}}, "origin", 1},
      {"one on the label of the other", {{300, 200}, {300, 150}}, "origin", 2},
      {"at the edges", {{2, 200}, {598, 200}, {300, 40}, {300, 396}}},
      {"in the corners", {{3, 3}, {597, 37}, {3, 397}, {597, 397}}},
      {"at the controls", {{530, 60}, {540, 110}, {60, 408}}, "destination", 2},
      {"long", {{30, 200}}, "a title that is a bit wider than half of the width of the view"},
      {"longer than the view",
       {{200, 200}},
       "a title that is wider than the view, because it contains the name of the place, the "
       "address "
       "of the place, the opening hours of the place, and then the name of the next place as "
       "well"}};
  for (const Screen screen : {Screen::none, Screen::x11}) {
    const TestApplication application(screen);
    for (const MarkersCase& row : table) {
      MGLMapView view(QRect(0, 0, 600, 400));
      view.setCenterCoordinate({39.28, -76.62});
      view.setZoomLevel(13);
      for (const QPointF& place : row.points)
        view.addAnnotations({makeMarker(view.convertPoint(place), row.title)});
      view.show();
      QImage picture;
      EXPECT_TRUE(waitUntil([&] {
        picture = view.grab().toImage();
        return countLabels(picture) == row.points.size();
      })) << row.name
          << ": " << countLabels(picture);
      int red = 0;
      for (int i = 0; i < picture.width() * picture.height(); ++i)
        red += isAlike(picture.pixelColor(i % picture.width(), i / picture.width()), pinColor);
      // A pin has more than 300 red pixels.
      EXPECT_GE(red, 300 * row.visiblePins) << row.name;
    }
  }
}

// The Mapbox GL engine also shows an attribution.
TEST(MapLabelTest, RouteIsShownClearOfVisibleControls) {
  const std::vector<Coordinate> routes[] = {{{47.36, 8.52}, {47.38, 8.56}},
                                            {{47.36, 8.56}, {47.38, 8.52}},
                                            {{47.36, 8.54}, {47.37, 8.54}},
                                            {{47.37, 8.5}, {47.37, 8.6}}};
  for (const Screen screen : {Screen::none, Screen::x11}) {
    const TestApplication application(screen);
    MGLMapView view;
    view.setStyleURL(application.file("style.json", R"({"version":8,"layers":[],"sources":{"a":{
        "type":"raster","tiles":[],"attribution":"&copy; Surveyors"}}})"));
    view.show();
    const QWidget* const controls[] = {
        view.findChild<QWidget*>("zoomIn"), view.findChild<QWidget*>("zoomOut"),
        view.findChild<QWidget*>("scaleBar"), view.findChild<QLabel*>()};
    for (const QSize& size : {QSize(320, 220), QSize(200, 240), QSize(900, 640)}) {
      view.resize(size);
      for (const auto& ends : routes) {
        SCOPED_TRACE(std::to_string(size.width()) + " " + std::to_string(&ends - routes));
        view.removeAnnotations(view.annotations());
        view.addAnnotations({makeLine(ends), makeMarker(ends.front(), "origin"),
                             makeMarker(ends.back(), "destination")});
        QTest::keyClick(&view, Qt::Key_Home);
        for (const Coordinate& end : ends) {
          const QRectF pin(view.convertCoordinate(end) - QPointF(13, 36), QSizeF(26, 36));
          EXPECT_TRUE(QRectF(view.rect()).contains(pin));
          for (const QWidget* const control : controls)
            EXPECT_FALSE(control->isVisible() && pin.intersects(control->geometry()));
        }
        EXPECT_TRUE(waitUntil([&] { return countLabels(view.grab().toImage()) == 2; }));
      }
    }
    view.resize(320, 220);
    view.removeAnnotations(view.annotations());
    view.addAnnotations({makeLine(routes[2])});
    QTest::keyClick(&view, Qt::Key_Home);
    const double level = view.zoomLevel();
    view.setShowsScaleBar(false);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_GT(view.zoomLevel(), level) << "the hidden scale bar needs no space";
  }
}

}  // namespace

}  // namespace quorvelkit::test
