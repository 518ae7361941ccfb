// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"

#include <QuorvelMap/AnnotationStore_p.h>

#include <algorithm>
#include <cmath>
#include <fstream>

namespace quorvelkit::test {

namespace {

using Screen = TestApplication::Screen;

constexpr Coordinate town{39.28, -76.62};
const QColor lineColor(200, 0, 0);

// A view with a delegate that makes wide red lines.
struct Scene {
  explicit Scene(Coordinate center) : view(QRect(0, 0, 600, 400)) {
    delegate->width = 12;
    delegate->color = lineColor;
    view.setDelegate(delegate);
    view.setCenterCoordinate(center);
    view.setZoomLevel(13);
  }
  std::shared_ptr<TestDelegate> delegate = std::make_shared<TestDelegate>();
  MGLMapView view;
};

struct MGLMapViewTest : EnginesTest {
  Scene scene{town};
  MGLMapView& view = scene.view;
};
INSTANTIATE_TEST_SUITE_P(Engines, MGLMapViewTest, bothEngines, engineName);

Coordinate east(Coordinate from, double degrees) {
  return {from.latitude, from.longitude + degrees};
}

// A line from west to east.
std::shared_ptr<MGLPolyline> lineThrough(Coordinate center) {
  return makeLine({east(center, -0.01), east(center, 0.01)});
}

double residentMegabytes() {
  long total = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return static_cast<double>(resident) * 4096 / 1e6;
}

// Expects a line of 12 pixels from west to east through the coordinate.
void expectWideLine(MGLMapView& view, Coordinate at, const QColor& color) {
  EXPECT_TRUE(shows(view, at, color));
  EXPECT_TRUE(shows(view, at, color, {0, -4}));
  EXPECT_TRUE(shows(view, at, color, {0, 4}));
  EXPECT_TRUE(shows(view, at, plainBackground, {0, -9}));
  EXPECT_TRUE(shows(view, at, plainBackground, {0, 9}));
}

TEST_P(MGLMapViewTest, DrawsLinesWithWidthColorAndAlpha) {
  scene.delegate->alpha = 0.5;
  view.addAnnotations({lineThrough(town)});
  EXPECT_EQ(scene.delegate->receivedViews, std::vector<const MGLMapView*>(3, &view));
  view.show();
  const QColor blended((200 + plainBackground.red()) / 2, plainBackground.green() / 2,
                       plainBackground.blue() / 2);
  expectWideLine(view, town, blended);
  EXPECT_TRUE(shows(view, east(town, -0.012), plainBackground)) << "after the end of the line";
}

TEST_P(MGLMapViewTest, DefaultsAreThreePixelsOfTheTintColor) {
  view.setDelegate({});
  EXPECT_EQ(view.tintColor(), view.palette().color(QPalette::Highlight));
  view.setTintColor(Qt::blue);
  EXPECT_EQ(view.tintColor(), QColor(Qt::blue));
  view.show();
  view.addAnnotations({lineThrough(town)});
  EXPECT_TRUE(waitUntil([&] {
    double blue = 0;
    for (int y = -6; y <= 6; ++y) {
      const QColor seen = colorAt(view, view.convertCoordinate(town) + QPointF(0, y));
      blue += (plainBackground.red() - seen.red()) / double(plainBackground.red());
    }
    return std::abs(blue - 3) < 0.3;
  }));
  view.setTintColor(QColor());
  EXPECT_EQ(view.tintColor(), view.palette().color(QPalette::Highlight));
}

TEST_P(MGLMapViewTest, MarkersAreAtTheirCoordinatesAndLabelsHaveContrastOnDarkStyle) {
  view.setCenterCoordinate({0, 0});
  view.setStyleURL(application_.file("dark.json", styleWithBackground("#102030")));
  view.addAnnotations({makeMarker({0, 0}, "mm")});
  scene.delegate->image = MGLAnnotationImage(filledImage({40, 20}, Qt::blue));
  const Coordinate second = east({0, 0}, 0.01);
  view.addAnnotations({makeMarker(second, "")});
  view.show();

  const QColor background = GetParam() == Screen::x11 ? QColor(0x10, 0x20, 0x30) : plainBackground;
  EXPECT_TRUE(shows(view, {0, 0}, pinColor, {0, -12})) << "the pin";
  EXPECT_TRUE(shows(view, {0, 0}, background, {0, 3})) << "below its tip";
  for (const QPointF corner : {QPointF(-18, -8), QPointF(18, 8)}) {
    EXPECT_TRUE(shows(view, second, Qt::blue, corner));
    EXPECT_TRUE(shows(view, second, background, corner * 1.3));
  }
  // The label above the pin has dark letters on white.
  const QImage picture = view.grab().toImage();
  const QPoint tip = view.convertCoordinate({0, 0}).toPoint();
  int white = 0, dark = 0;
  for (int y = -60; y < -40; ++y) {
    for (int x = -12; x <= 12; ++x) {
      const QColor pixel = picture.pixelColor(tip + QPoint(x, y));
      white += isAlike(pixel, Qt::white) ? 1 : 0;
      dark += pixel.lightness() < 100 && !isAlike(pixel, background) ? 1 : 0;
    }
  }
  EXPECT_GT(white, 100);
  EXPECT_GT(dark, 20);
}

// The edges of the second line are between pixels, so that a darker or lighter pixel is visible.
TEST_P(MGLMapViewTest, LinesHaveRoundCapsAndJoinsWithEvenEdges) {
  view.show();
  // From the left to the center of the view, and back.
  const auto at = [&](double x, double y) { return view.convertPoint({300 + x, 200 + y}); };
  view.addAnnotations({makeLine({at(-100, 0), at(0, 0), at(-100, 40)})});
  const std::tuple<QPointF, bool> table[] = {
      {{4, 0}, true}, {{9, 0}, false}, {{-104, 0}, true}, {{-107, -6}, false}};
  for (const auto& [place, isOnLine] : table)
    EXPECT_TRUE(shows(view, town, isOnLine ? lineColor : plainBackground, place)) << place.x();
  for (const double bend : {-0.5, 0.5}) {
    for (const double end : {-60, 60}) {
      view.removeAnnotations(view.annotations());
      view.addAnnotations({makeLine({at(-end, 0.5 + bend), at(0, 0.5), at(end, 0.5 + bend)})});
      EXPECT_TRUE(shows(view, town, lineColor));
      const QImage picture = view.grab().toImage();
      for (int y = 190; y <= 210; ++y) {
        const int join = picture.pixelColor(300, y).green();
        const int beside =
            (picture.pixelColor(290, y).green() + picture.pixelColor(310, y).green()) / 2;
        EXPECT_NEAR(join, beside, 40) << y << " " << bend << " " << end;
      }
    }
  }
}

TEST_P(MGLMapViewTest, MarkersAreVisibleAtEveryZoomLevel) {
  view.setCenterCoordinate({0, 0});
  view.addAnnotations({makeMarker({0, 0}, "")});
  view.show();
  for (double level = 0; level <= 20; level += level < 3 ? 0.5 : 1) {
    view.setZoomLevel(level);
    EXPECT_TRUE(shows(view, {0, 0}, pinColor, {0, -10})) << level;
  }
}

TEST_P(MGLMapViewTest, AnnotationsAreInInsertionOrderAndLinesOfAnyLengthAreDrawn) {
  view.show();
  std::vector<Coordinate> many(100000);
  for (std::size_t i = 0; i < many.size(); ++i) {
    const double part = static_cast<double>(i) / 99999;
    many[i] = {town.latitude + 0.0001 * std::sin(part * 300), town.longitude + 0.02 * part};
  }
  const MGLMapView::Annotations all = {makeLine({}), makeMarker(town, ""), makeLine({town}),
                                       makeLine({east(town, -0.01), east(town, -0.005)}),
                                       makeLine(std::move(many))};
  view.addAnnotations({all[0], all[1], all[2], all[3]});
  EXPECT_TRUE(shows(view, east(town, -0.007), lineColor));
  view.addAnnotations({all[3], all[4], nullptr});
  EXPECT_EQ(view.annotations(), all);
  EXPECT_TRUE(shows(view, east(town, 0.01), lineColor));
  EXPECT_TRUE(shows(view, east(town, -0.002), plainBackground));
  view.removeAnnotations({all[4], all[2], all[0], nullptr});
  EXPECT_EQ(view.annotations(), (MGLMapView::Annotations{all[1], all[3]}));
  EXPECT_TRUE(shows(view, east(town, 0.01), plainBackground));
}

TEST_P(MGLMapViewTest, LinesCrossTheAntimeridian) {
  view.setCenterCoordinate({0, 180});
  view.show();
  view.addAnnotations({makeLine({{0, 179.98}, {0, -179.99}, {0, 179.99}, {0, -179.98}})});
  for (const double longitude : {179.985, 179.9999, 180.0, -179.9999, -179.985})
    EXPECT_TRUE(shows(view, {0, longitude}, lineColor)) << longitude;
  view.setCenterCoordinate({0, 0});
  EXPECT_TRUE(shows(view, {0, 0}, plainBackground)) << "a line around the world";
  view.addAnnotations({makeLine({{0, -0.01}, {NAN, 0}, {0, 0.01}})});
  EXPECT_TRUE(shows(view, {0, 0}, lineColor)) << "the point at (0, 0)";
}

TEST_P(MGLMapViewTest, KeepsCameraAndAnnotationsAfterResizeAndInAnotherWindow) {
  std::vector<QSize> sizes = {{300, 200}, {640, 200}, {640, 480}, {1000, 800}};
  // The sizes while a user drags the frame of the window, and after the window was maximized.
  for (int step = 1; step <= 6; ++step)
    sizes.emplace_back(1000 - 7 * step, 800 - 11 * step);
  sizes.emplace_back(700, 500);
  QWidget first, second, frame;
  view.setZoomLevel(12.5);
  const Coordinate pin{town.latitude + 0.004, town.longitude};
  view.addAnnotations({lineThrough(town), makeMarker(pin, "")});
  // Moves the view itself or its parent.
  const std::pair<QWidget*, QWidget*> moves[] = {
      {&view, &first}, {&view, &frame}, {&frame, &second}, {&frame, &first}};
  for (const auto& [moved, to] : moves) {
    to->resize(1000, 800);
    moved->setParent(to);
    moved->show();
    to->show();
    frame.resize(1000, 800);
    for (const QSize& size : sizes) {
      view.resize(size);
      expectWideLine(view, town, lineColor);
      // Both sides of the pin, and the point below its tip.
      for (const double x : {-9, 9})
        EXPECT_TRUE(shows(view, pin, pinColor, {x, -23})) << size.height();
      EXPECT_TRUE(shows(view, pin, plainBackground, {0, 3})) << size.height();
      EXPECT_NEAR(view.centerCoordinate().latitude, town.latitude, 1e-4);
      EXPECT_NEAR(view.centerCoordinate().longitude, town.longitude, 1e-4);
      EXPECT_NEAR(view.zoomLevel(), 12.5, 1e-6);
      if (HasFailure()) break;
    }
  }
  const Coordinate north{town.latitude + 0.01, town.longitude};
  view.addAnnotations({lineThrough(north)});
  expectWideLine(view, north, lineColor);
  view.setParent(nullptr);
  frame.setParent(nullptr);
}

TEST_P(MGLMapViewTest, EdgesOfTheWorldAreNotVisible) {
  view.setZoomLevel(2);
  view.setCenterCoordinate({84, 20});
  view.show();
  for (const QSize& size : {QSize(600, 400), QSize(600, 900)}) {
    view.resize(size);
    EXPECT_TRUE(waitUntil([&] {
      view.grab();
      return view.convertCoordinate({85.0511, 20}).y() < 0.5;
    })) << view.convertCoordinate({85.0511, 20}).y();
    EXPECT_NEAR(view.centerCoordinate().longitude, 20, 1e-6);
  }
}

// The second view is in the same window or in its own.
TEST_P(MGLMapViewTest, ViewsAreIndependentAndFreeTheirMemory) {
  const auto filledMarkerImage = [](const QColor& color) {
    return MGLAnnotationImage(filledImage({20, 20}, color));
  };
  QWidget window;
  window.resize(1250, 450);
  Scene& first = scene;
  first.view.setParent(&window);
  first.view.addAnnotations({lineThrough(town)});
  first.delegate->image = filledMarkerImage(Qt::green);
  first.view.addAnnotations({makeMarker(town, "")});
  window.show();
  const Coordinate harbor{-33.86, 151.2};
  double settled = 0;
  for (int round = 0; round < 16; ++round) {
    Scene second(harbor);
    if (round % 2 == 0) second.view.setParent(&window);
    second.view.move(620, 0);
    second.delegate->color = QColor(0, 0, 200);
    second.view.show();
    // The marker is drawn above the line, although it is added first.
    second.delegate->image = filledMarkerImage(Qt::yellow);
    second.view.addAnnotations({makeMarker(east(harbor, -0.005), "")});
    second.view.addAnnotations({lineThrough(harbor)});
    EXPECT_TRUE(shows(second.view, harbor, *second.delegate->color));
    EXPECT_TRUE(shows(second.view, east(harbor, -0.005), Qt::yellow));
    if (round < 2) {
      EXPECT_TRUE(shows(first.view, town, Qt::green));
    }
    if (round == 5) settled = residentMegabytes();
  }
  EXPECT_TRUE(shows(first.view, east(town, 0.005), *first.delegate->color));
  // AddressSanitizer keeps the pictures of the plain engine after they were freed.
  if (GetParam() == Screen::x11) {
    EXPECT_LT(residentMegabytes() - settled, 20);
  }
  first.view.setParent(nullptr);
}

TEST_P(MGLMapViewTest, VisibleCoordinatesFillTheViewInsideTheMargins) {
  const std::tuple<const char*, std::vector<Coordinate>, QMargins> table[] = {
      {"a town", {{39.27, -76.65}, {39.31, -76.58}, {39.29, -76.60}}, {}},
      {"uneven margins", {{39.27, -76.65}, {39.31, -76.58}}, {150, 10, 20, 90}},
      {"across the antimeridian", {{-17, 179.5}, {-16, -179.5}, {-16.5, 180}}, {20, 20, 20, 20}},
      {"tall", {{0, 0}, {10, 0}}, {10, 50, 10, 10}},
      {"one coordinate", {{48, 11}}, {0, 100, 0, 0}},
      {"a coordinate that is not finite", {{48, 11}, {NAN, 11}, {48.1, 11.1}}, {}}};
  for (const auto& [name, positions, margins] : table) {
    view.setVisibleCoordinates(positions, margins);
    const QRectF inside = QRectF(QRect({}, view.size()).marginsRemoved(margins));
    QRectF used;
    for (const Coordinate& position : positions) {
      if (!std::isfinite(position.latitude)) continue;
      const QPointF point = view.convertCoordinate(position);
      EXPECT_TRUE(inside.adjusted(-1, -1, 1, 1).contains(point)) << name << " " << point.x();
      used |= QRectF(point, QSizeF(1e-9, 1e-9));
      const Coordinate back = view.convertPoint(point);
      EXPECT_NEAR(back.latitude, position.latitude, 1e-9);
      EXPECT_NEAR(std::remainder(back.longitude - position.longitude, 360), 0, 1e-9);
    }
    if (positions.size() == 1) continue;
    EXPECT_TRUE(std::abs(used.width() - inside.width()) < 1 ||
                std::abs(used.height() - inside.height()) < 1)
        << name;
  }
  view.setCenterCoordinate(town);
  view.setZoomLevel(7);
  view.setVisibleCoordinates({});
  view.setCenterCoordinate({NAN, 0});
  view.setCenterCoordinate({0, INFINITY});
  view.setZoomLevel(NAN);
  EXPECT_EQ(view.centerCoordinate(), town) << "no finite coordinates";
  EXPECT_EQ(view.zoomLevel(), 7);
}

int operations = 0;

// Counts its hash and comparison operations.
struct Item {
  int number;
  bool operator==(const Item& other) const {
    ++operations;
    return number == other.number;
  }
};
struct ItemHash {
  std::size_t operator()(const Item& item) const {
    ++operations;
    return static_cast<std::size_t>(item.number);
  }
};
using Store = AnnotationStore<Item, int, ItemHash>;

TEST(AnnotationStoreTest, NumberOfOperationsIsLinear) {
  constexpr int count = 20000, perItem = 10;
  Store store;
  for (int i = 0; i < count; ++i) {
    EXPECT_FALSE(store.contains({i}));
    EXPECT_TRUE(store.add({i}, -i));
  }
  EXPECT_LE(operations, perItem * count);
  operations = 0;
  EXPECT_FALSE(store.add({count / 2}, 0));
  store.remove({store.items().begin(), store.items().begin() + count / 2});
  EXPECT_LE(operations, perItem * count);
  EXPECT_EQ(store.items().size(), std::size_t{count / 2});
  EXPECT_EQ(store.items().front().number, count / 2);
  EXPECT_EQ(store.appearances().back(), 1 - count);
  store.remove(store.items());
  EXPECT_TRUE(store.items().empty() && store.appearances().empty());
}

}  // namespace

}  // namespace quorvelkit::test
