// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "tests/kit/FakeServer.h"

#include <QuorvelKit/QVRouteWidget.h>

#include <QtTest/QTest>

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QScrollArea>
#include <QSplitter>
#include <QTextEdit>
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

TEST(MapLabelTest, LabelsAreCompleteInsideViewAndDoNotOverlap) {
  // Points in pixels, the title of the markers, and the number of pins that are completely visible.
  const std::tuple<std::vector<QPointF>, const char*, int> table[] = {
      {{{300, 200}}, "origin", 1},
      {{{300.5, 200.5}, {100.3, 100.7}, {450.75, 300.25}}, "between pixels", 0},
      {{{300, 200}, {300, 200}, {300, 200}}, "same place", 0},
      {{{300, 200}, {312, 203}}, "origin", 1},
      {{{300, 200}, {300, 150}}, "origin", 2},
      {{{2, 200}, {598, 200}, {300, 40}, {300, 396}}, "edges", 0},
      {{{3, 3}, {597, 37}, {3, 397}, {597, 397}}, "corners", 0},
      {{{530, 60}, {540, 110}, {60, 408}}, "destination", 2},
      {{{30, 200}}, "a title that is a bit wider than half of the width of the view", 0},
      {{{200, 200}},
       "a title that is wider than the view, because it contains the name of the place, the "
       "address "
       "of the place, the opening hours of the place, and then the name of the next place as well",
       0}};
  for (const Screen screen : {Screen::none, Screen::x11}) {
    const TestApplication application(screen);
    for (const auto& [places, title, visiblePins] : table) {
      MGLMapView view(QRect(0, 0, 600, 400));
      view.setCenterCoordinate({39.28, -76.62});
      view.setZoomLevel(13);
      for (const QPointF& place : places)
        view.addAnnotations({makeMarker(view.convertPoint(place), title)});
      view.show();
      QImage picture;
      EXPECT_TRUE(waitUntil([&] {
        picture = view.grab().toImage();
        return countLabels(picture) == view.annotations().size();
      })) << title
          << ": " << countLabels(picture);
      int red = 0;
      for (int i = 0; i < picture.width() * picture.height(); ++i)
        red += isAlike(picture.pixelColor(i % picture.width(), i / picture.width()), pinColor);
      // A pin has more than 300 red pixels.
      EXPECT_GE(red, 300 * visiblePins) << title;
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

// Puts a map and other widgets into a window.
QWidget* arrange(const std::string& kind, QWidget* map) {
  if (kind == "form") {
    auto* const middle = new QWidget;
    auto* const form = new QFormLayout(middle);
    form->addRow("From", new QLineEdit);
    form->addRow("Route", map);
    return middle;
  }
  if (kind == "splitter") {
    auto* const splitter = new QSplitter;
    splitter->addWidget(new QTextEdit);
    splitter->addWidget(map);
    return splitter;
  }
  auto* const area = new QScrollArea;
  area->setWidgetResizable(kind == "resizable scroll area");
  area->setWidget(map);
  return area;
}

// The server must start before the application object, because its queue must outlive it.
TEST(MapSizeTest, MapsFillTheSpaceInLayouts) {
  const FakeServer server;
  const TestApplication application(TestApplication::Screen::none);
  const auto screen = QVViewController::make();
  // The minimum size of a map in a window of 700 x 600 pixels.
  const std::pair<const char*, QSize> arrangements[] = {{"form", {500, 400}},
                                                        {"splitter", {300, 500}},
                                                        {"scroll area", {480, 360}},
                                                        {"resizable scroll area", {600, 500}}};
  for (const auto& [arrangement, minimum] : arrangements) {
    auto* const route = new QVRouteWidget;
    for (const auto& controller : {screen, route->controller()}) {
      controller->setOrigin({1, 2});
      controller->setDestination({3, 4});
    }
    const std::pair<const char*, QWidget*> maps[] = {
        {"map", new MGLMapView}, {"screen", screen->view()}, {"widget", route}};
    for (const auto& [kind, map] : maps) {
      SCOPED_TRACE(std::string(kind) + " in a " + arrangement);
      QMainWindow window;
      window.setCentralWidget(arrange(arrangement, map));
      window.resize(700, 600);
      window.show();
      EXPECT_GE(map->width(), minimum.width());
      EXPECT_GE(map->height(), minimum.height());
      window.resize(1, 1);
      EXPECT_GE(map->width(), 160);
      EXPECT_GE(map->height(), 120);
    }
  }
}

}  // namespace

}  // namespace quorvelkit::test
