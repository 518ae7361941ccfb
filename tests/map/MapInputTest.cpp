// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"

#include <QtTest/QTest>

#include <QAccessible>
#include <QStyleHints>
#include <QWheelEvent>
#include <QWindow>
#include <cmath>

namespace quorvelkit::test {

namespace {

using Screen = TestApplication::Screen;

constexpr Coordinate start{39.28, -76.62};
constexpr QPointF viewCenter(300, 200), point(180, 290);
constexpr auto pressed = Qt::TouchPointPressed, moved = Qt::TouchPointMoved,
               still = Qt::TouchPointStationary, released = Qt::TouchPointReleased;

// Sends events to the window of a view, as the window system does.
class MapInputTest : public EnginesTest {
 protected:
  MapInputTest() {
    view_.setCenterCoordinate(start);
    view_.setZoomLevel(10);
    view_.show();
    QApplication::setActiveWindow(&view_);
    // Also a slow machine must recognize double taps.
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(600000);
  }

  QWindow* window() { return view_.windowHandle(); }

  void wheel(QPointF at, int angle) {
    QWheelEvent event(at, view_.mapToGlobal(at.toPoint()), QPoint(), QPoint(0, angle), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(window(), &event);
  }
  struct Finger {
    int id;
    Qt::TouchPointState state;
    QPointF at;
  };
  void touch(std::initializer_list<Finger> fingers) {
    auto event = QTest::touchEvent(window(), device_);
    for (const auto& [id, state, at] : fingers) {
      if (state == pressed) event.press(id, at.toPoint(), window());
      if (state == moved) event.move(id, at.toPoint(), window());
      if (state == still) event.stationary(id);
      if (state == released) event.release(id, at.toPoint(), window());
    }
  }
  void tap(QPointF at) {
    touch({{0, pressed, at}});
    touch({{0, released, at}});
  }

  // Expects the coordinate at the point of the view, and the zoom level.
  void expect(Coordinate coordinate, QPointF at, double level, const char* after) {
    const QPointF seen = view_.convertCoordinate(coordinate);
    EXPECT_NEAR(seen.x(), at.x(), 0.05) << after;
    EXPECT_NEAR(seen.y(), at.y(), 0.05) << after;
    EXPECT_NEAR(view_.zoomLevel(), level, 1e-6) << after;
  }

  MGLMapView view_{QRect(0, 0, 600, 400)};
  QTouchDevice* const device_ = QTest::createTouchDevice();
};

INSTANTIATE_TEST_SUITE_P(Engines, MapInputTest, bothEngines, engineName);

TEST_P(MapInputTest, MouseAndWheelKeepTheCoordinateBelowThePointer) {
  const Coordinate coordinate = view_.convertPoint(point);
  wheel(point, 120);
  wheel(point, 120);
  expect(coordinate, point, 10.8, "two wheel steps");
  wheel(point, 60);
  expect(coordinate, point, 11, "two and a half wheel steps");
  wheel(point, -300);
  expect(coordinate, point, 10, "the same distance back");
  QTest::mouseDClick(window(), Qt::LeftButton, {}, point.toPoint());
  expect(coordinate, point, 11, "a double click");
  QTest::mouseDClick(window(), Qt::RightButton, {}, point.toPoint());
  expect(coordinate, point, 11, "a double click with the right button");

  QTest::mousePress(window(), Qt::LeftButton, {}, point.toPoint());
  QTest::mouseMove(window(), QPoint(200, 200));
  QTest::mouseMove(window(), viewCenter.toPoint());
  QTest::mouseRelease(window(), Qt::LeftButton, {}, viewCenter.toPoint());
  expect(coordinate, viewCenter, 11, "a drag");
  QTest::mouseMove(window(), point.toPoint());
  expect(coordinate, viewCenter, 11, "a move without a button");

  wheel(point, 30000);
  EXPECT_DOUBLE_EQ(view_.zoomLevel(), 20);
  wheel(point, -30000);
  const double filling = std::log2(600 / 512.0);
  EXPECT_NEAR(view_.zoomLevel(), filling, 1e-6) << "the world fills the view";
  QTest::mousePress(window(), Qt::LeftButton, {}, viewCenter.toPoint());
  QTest::mouseMove(window(), QPoint(300, 399));
  EXPECT_NEAR(view_.convertPoint({300, 0}).latitude, 85.0511, 1e-3)
      << "the upper edge of the world";
}

TEST_P(MapInputTest, FingersDragPinchAndTap) {
  Coordinate coordinate = view_.convertPoint(point);
  touch({{0, pressed, point}});
  touch({{0, moved, {250, 250}}});
  touch({{0, moved, viewCenter}});
  touch({{0, released, viewCenter}});
  expect(coordinate, viewCenter, 10, "one finger");

  // The fingers move to twice the distance, and their center moves.
  coordinate = view_.convertPoint({250, 150});
  touch({{0, pressed, {200, 150}}});
  touch({{0, still, {}}, {1, pressed, {300, 150}}});
  touch({{0, moved, {200, 200}}, {1, moved, {350, 200}}});
  touch({{0, moved, {180, 200}}, {1, moved, {380, 200}}});
  expect(coordinate, {280, 200}, 11, "two fingers");
  touch({{0, moved, {230, 200}}, {1, moved, {330, 200}}});
  touch({{0, released, {230, 200}}, {1, still, {}}});
  touch({{1, moved, {340, 210}}});
  touch({{1, released, {340, 210}}});
  expect(coordinate, {290, 210}, 10, "half the distance, then one finger");

  coordinate = view_.convertPoint(point);
  tap(point);
  expect(coordinate, point, 10, "a tap");
  tap(viewCenter);
  expect(coordinate, point, 10, "a tap elsewhere");
  tap(point);
  tap(point + QPointF(5, 5));
  EXPECT_NEAR(view_.zoomLevel(), 11, 1e-6) << "a double tap";
  tap(point);
  EXPECT_NEAR(view_.zoomLevel(), 11, 1e-6) << "a third tap is a single tap";
}

TEST_P(MapInputTest, KeysMoveZoomAndShowTheRouteAndTheFocusFrame) {
  auto* const frame = view_.findChild<QWidget*>("focusFrame");
  QTest::mouseClick(window(), Qt::LeftButton, {}, viewCenter.toPoint());
  EXPECT_TRUE(view_.hasFocus());
  EXPECT_FALSE(frame->isVisible()) << "a click";
  const std::tuple<Qt::Key, Qt::KeyboardModifier, QPointF, double> table[] = {
      {Qt::Key_Left, Qt::NoModifier, {80, 0}, 10},
      {Qt::Key_Right, Qt::NoModifier, {0, 0}, 10},
      {Qt::Key_Up, Qt::KeypadModifier, {0, 80}, 10},
      {Qt::Key_Down, Qt::ControlModifier, {0, 80}, 10},
      {Qt::Key_Down, Qt::NoModifier, {0, 0}, 10},
      {Qt::Key_Plus, Qt::ShiftModifier, {0, 0}, 11},
      {Qt::Key_Equal, Qt::NoModifier, {0, 0}, 12},
      {Qt::Key_Minus, Qt::NoModifier, {0, 0}, 11},
      {Qt::Key_A, Qt::NoModifier, {0, 0}, 11},
      {Qt::Key_Home, Qt::NoModifier, {0, 0}, 11}};
  for (const auto& [key, modifier, offset, level] : table) {
    QTest::keyClick(window(), key, modifier);
    expect(start, viewCenter + offset, level, QKeySequence(key).toString().toLocal8Bit());
  }
  EXPECT_TRUE(frame->isVisible());
  EXPECT_TRUE(isAlike(colorAt(view_, {1, 100}), view_.palette().color(QPalette::Highlight)));
  view_.clearFocus();
  EXPECT_FALSE(frame->isVisible());

  // Home shows the lines and not the marker.
  const std::vector<Coordinate> ends{{50, 10}, {51, 11}};
  view_.addAnnotations({makeMarker({0, 0}, "elsewhere"), makeLine(ends)});
  view_.setFocus(Qt::TabFocusReason);
  QTest::keyClick(window(), Qt::Key_Home);
  for (const Coordinate& end : ends)
    EXPECT_TRUE(QRectF(view_.rect()).contains(view_.convertCoordinate(end)));
  EXPECT_GT(view_.zoomLevel(), 6);
  view_.removeAnnotations({view_.annotations().back()});
  QTest::keyClick(window(), Qt::Key_Home);
  EXPECT_TRUE(shows(view_, {0, 0}, pinColor, {0, -12}));
  view_.removeAnnotations(view_.annotations());
  EXPECT_TRUE(shows(view_, {0, 0}, plainBackground, {0, -12}));
}

TEST_P(MapInputTest, ButtonsZoomAndCanBeHidden) {
  auto* const button = view_.findChild<QWidget*>("zoomIn");
  const QPoint in = button->geometry().center();
  const QPoint out = view_.findChild<QWidget*>("zoomOut")->geometry().center();
  QTest::mouseClick(window(), Qt::LeftButton, {}, in);
  expect(start, viewCenter, 11, "the plus button");
  tap(in);
  expect(start, viewCenter, 12, "the plus button by a finger");
  QTest::mouseClick(window(), Qt::LeftButton, {}, out);
  expect(start, viewCenter, 11, "the minus button");
  button->setFocus(Qt::TabFocusReason);
  QTest::keyClick(window(), Qt::Key_Space);
  expect(start, viewCenter, 12, "the plus button by a key");
  view_.resize(500, 300);
  EXPECT_EQ(button->geometry().center(), in - QPoint(100, 0));
  view_.setShowsZoomButtons(false);
  EXPECT_FALSE(view_.showsZoomButtons());
  EXPECT_FALSE(button->isVisible());
  QTest::mouseClick(window(), Qt::LeftButton, {}, QPoint(in.x() - 100, in.y()));
  EXPECT_NEAR(view_.zoomLevel(), 12, 1e-6);
}

double metersBetween(Coordinate a, Coordinate b) {
  const double degree = M_PI / 180, radius = 40075016.686 / 2 / M_PI;
  const double turn = std::remainder(a.longitude - b.longitude, 360) * degree;
  return std::abs(turn) * radius * std::cos(a.latitude * degree);
}

TEST(ScaleBarTest, LengthMatchesTheTextInTheUnitsOfTheLocale) {
  const TestApplication application(Screen::none);
  const QLocale german(QLocale::German, QLocale::Germany);
  const QLocale american(QLocale::English, QLocale::UnitedStates);
  // Latitude, zoom level, locale, text and length in meters.
  const std::tuple<double, double, QLocale, const char*, double> table[] = {
      {0, 0, german, "5.000 km", 5e6},
      {50, 10, german, "5 km", 5000},
      {50, 15, german, "100 m", 100},
      {50, 20, american, "10 ft", 10 * 0.3048},
      {39, 12.5, american, "2,000 ft", 2000 * 0.3048},
      {39, 12, american, "1 mi", 1609.344},
      {0, 9, american, "10 mi", 16093.44},
      {90, 4, american, "20 mi", 0}};
  MGLMapView view(QRect(0, 0, 600, 400));
  const auto* const bar = view.findChild<QWidget*>("scaleBar");
  view.show();
  for (const auto& [latitude, level, locale, text, meters] : table) {
    view.setLocale(locale);
    view.setZoomLevel(level);
    view.setCenterCoordinate({latitude, 10});
    EXPECT_EQ(bar->accessibleDescription().toStdString(), text);
    EXPECT_TRUE(view.rect().contains(bar->geometry()));
    if (meters == 0) continue;
    // The widget is 6 pixels wider than the bar at each end.
    const Coordinate left = view.convertPoint({0, 200});
    const Coordinate right = view.convertPoint({bar->width() - 12.0, 200});
    EXPECT_NEAR(metersBetween(left, right) / meters, 1, 0.02) << text;
  }
  const int lowerEdge = bar->geometry().bottom();
  view.setFont(QFont(view.font().family(), 30));
  EXPECT_EQ(bar->geometry().bottom(), lowerEdge) << "a larger font";
  view.setShowsScaleBar(false);
  EXPECT_FALSE(view.showsScaleBar() || bar->isVisible());
}

TEST(MapAccessibilityTest, ViewControlsAndMarkersHaveNamesAndPositions) {
  auto application = std::make_unique<TestApplication>(Screen::none);
  auto view = std::make_unique<MGLMapView>(QRect(30, 20, 600, 400));
  view->setZoomLevel(5);
  view->setShowsScaleBar(false);
  view->show();
  QAccessibleInterface* const map = QAccessible::queryAccessibleInterface(view.get());
  ASSERT_NE(map, nullptr);
  EXPECT_EQ(map->text(QAccessible::Name), "Map");
  EXPECT_TRUE(map->state().focusable);
  const auto names = [&] {
    QStringList all;
    for (int i = 0; i < map->childCount(); ++i) {
      EXPECT_EQ(map->indexOfChild(map->child(i)), i);
      EXPECT_EQ(map->child(i)->parent(), map);
      all += map->child(i)->text(QAccessible::Name);
    }
    return all.join(", ").toStdString();
  };
  EXPECT_EQ(names(), "Zoom in, Zoom out");
  view->setLocale(QLocale::c());
  view->addAnnotations({makeMarker({0, 0}, "origin"), makeLine({{0, 0}, {1, 1}}),
                        makeMarker({0, 5}, ""), makeMarker({0, 60}, "far")});
  view->setShowsScaleBar(true);
  EXPECT_EQ(names(), "Zoom in, Zoom out, Scale, origin, Marker, far");
  QAccessibleInterface* const origin = map->child(3);
  EXPECT_EQ(origin->role(), QAccessible::Graphic);
  EXPECT_EQ(map->child(4)->text(QAccessible::Description), "Latitude 0.00000, longitude 5.00000");
  const QPoint pin = view->mapToGlobal(QPoint(300, 200 - 12));
  EXPECT_TRUE(origin->rect().contains(pin));
  EXPECT_EQ(map->childAt(pin.x(), pin.y()), origin);
  EXPECT_FALSE(origin->state().offscreen);
  EXPECT_TRUE(map->child(5)->state().offscreen);
  view->setCenterCoordinate({0, 60});
  EXPECT_TRUE(origin->state().offscreen);

  view->removeAnnotations({view->annotations().front()});
  EXPECT_FALSE(origin->isValid());
  EXPECT_EQ(names(), "Zoom in, Zoom out, Scale, Marker, far");
  view->setAccessibleName("Way to work");
  EXPECT_EQ(map->text(QAccessible::Name), "Way to work");
  application.reset();
  // A view that outlives the application must not crash, and cannot be deleted.
  static const MGLMapView* const kept = view.release();
  EXPECT_NE(kept, nullptr);
}

}  // namespace

}  // namespace quorvelkit::test
