// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "examples/map/RoutePage.h"
#include "sandbox/Sandbox.h"
#include "tests/sandbox/RunProgram.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVRouteResponse.h>

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtTest/QTest>

#include <QLabel>
#include <QListWidget>

namespace quorvelkit::test {

namespace {

// Turns off checks that fail in Qt and in the OpenGL driver.
const std::string checksOff =
    "ASAN_OPTIONS=detect_leaks=0 TSAN_OPTIONS=ignore_noninstrumented_modules=1 ";
const std::string program = checksOff + QUORVEL_MAP;

// The bounding boxes of the pixels with the color. More than 10 columns without such a pixel
// separate two boxes.
std::vector<QRect> boxesOf(const QImage& picture, const QColor& color) {
  std::vector<QRect> boxes;
  for (int x = 0; x < picture.width(); ++x) {
    for (int y = 0; y < picture.height(); ++y) {
      if (!isAlike(picture.pixelColor(x, y), color)) continue;
      if (boxes.empty() || x > boxes.back().right() + 10) boxes.emplace_back();
      boxes.back() |= QRect(x, y, 1, 1);
    }
  }
  return boxes;
}

TEST(MapExampleTest, ScreenshotShowsRouteOnStyle) {
  const TestApplication application;
  sandbox::Sandbox sandbox(sandbox::MapData::builtInTown());
  ASSERT_TRUE(sandbox.start(0));
  const std::string file = application.folder().toStdString() + "/route.png";
  const sandbox::Output output =
      sandbox::run(program + " --backend " + sandbox.url() + " --style " + sandbox.url() +
                   "/style.json --from 40.4523,-38.2804 --to 40.4469,-38.1872 --width 800"
                   " --height 320 --screenshot " +
                   file);
  EXPECT_EQ(output.exitCode, 0) << output.err;
  EXPECT_EQ(output.out, "Drawn by Qt Location's engine mapboxgl.\n");
  const QImage picture(QString::fromStdString(file));
  ASSERT_EQ(picture.size(), QSize(800, 320));
  // Two complete pins, and a line between them.
  const std::vector<QRect> pins = boxesOf(picture, QColor(0xd6, 0x33, 0x3f));
  ASSERT_EQ(pins.size(), 2U);
  const QColor blue(0x3d, 0x86, 0xf5);
  QRect line;
  for (const QRect& box : boxesOf(picture, blue))
    line |= box;
  EXPECT_TRUE(QRect(20, 20, 460, 280).contains(line));
  for (const QRect& pin : pins) {
    EXPECT_NEAR(pin.width(), 20, 1);
    EXPECT_NEAR(pin.height(), 27, 2);
    const QRect tip(pin.center().x() - 6, pin.bottom(), 12, 12);
    EXPECT_FALSE(boxesOf(picture.copy(tip), blue).empty()) << "no line at " << tip.x();
  }
  for (const char* const color : {"#ece8de", "#a7d2ec", "#f6a96b", "#d2e6b8"})
    EXPECT_FALSE(boxesOf(picture, color).empty()) << color;
  QDirIterator compiled(application.folder(), {"*.qmlc"}, QDir::Files,
                        QDirIterator::Subdirectories);
  EXPECT_FALSE(compiled.hasNext()) << "Qt compiled the scene at run time";
}

TEST(MapExampleTest, QuorvelDrawsAPicture) {
  const TestApplication application;
  sandbox::Sandbox sandbox(sandbox::MapData::builtInTown());
  ASSERT_TRUE(sandbox.start(0));
  const std::string folder = application.folder().toStdString();
  const std::string command = checksOff + QUORVEL +
                              " route --from 40.4523,-38.2804 --to 40.4469,-38.1872 --backend " +
                              sandbox.url() + " --picture " + folder + '/';
  for (const char* const name : {"route.png", "route.svg"}) {
    const sandbox::Output output = sandbox::run(command + name);
    EXPECT_EQ(output.exitCode, 0) << output.err;
    EXPECT_THAT(output.out, testing::HasSubstr("Arrive at your destination"));
  }
  const QImage picture(QString::fromStdString(folder + "/route.png"));
  EXPECT_EQ(boxesOf(picture, QColor(0xd6, 0x33, 0x3f)).size(), 2U);
  for (const char* const color : {"#a7d2ec", "#f6a96b", "#3d86f5"})
    EXPECT_FALSE(boxesOf(picture, color).empty()) << color;
  QFile svg(QString::fromStdString(folder + "/route.svg"));
  ASSERT_TRUE(svg.open(QIODevice::ReadOnly));
  const QByteArray text = svg.readAll();
  const QByteArray map = text.mid(text.indexOf("base64,") + 7);
  EXPECT_FALSE(
      boxesOf(QImage::fromData(QByteArray::fromBase64(map.left(map.indexOf('"')))), "#f6a96b")
          .empty());
  EXPECT_EQ(text.count("<polyline") + text.count("<path"), 4);
}

constexpr Coordinate tripStart{40.4523, -38.2804}, tripEnd{40.4469, -38.1872};

QString textOf(const RoutePage& page) { return page.findChild<QLabel*>("message")->text(); }

TEST(MapExampleTest, ClickOnTurnShowsItsMarker) {
  sandbox::Sandbox sandbox(sandbox::MapData::builtInTown());
  ASSERT_TRUE(sandbox.start(0));
  const TestApplication application(TestApplication::Screen::none);
  QVBackendless::setBaseURL(sandbox.url());
  RoutePage page(tripStart, tripEnd, darkTheme());
  page.resize(800, 400);
  page.show();
  page.load();
  EXPECT_EQ(textOf(page), "Looking for a route \u2026");
  ASSERT_TRUE(waitUntil([&] { return page.isFinished(); }));
  EXPECT_TRUE(page.hasRoute());
  std::vector<Coordinate> places;
  for (const QVPoint& point : page.screen().route()->points()) {
    if (point.turn() != nullptr) places.push_back(point.location());
  }
  auto* const list = page.findChild<QListWidget*>();
  ASSERT_EQ(list->count(), static_cast<int>(places.size()));
  ASSERT_GE(places.size(), 3U);
  MGLMapView& map = *page.screen().mapview();
  EXPECT_EQ(map.annotations().size(), 4U) << "outline, markers and line";
  for (const int row : {1, 2, 1}) {
    const QPoint item = list->visualItemRect(list->item(row)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, item);
    const Coordinate place = places[static_cast<std::size_t>(row)];
    EXPECT_NEAR(map.centerCoordinate().latitude, place.latitude, 1e-9);
    EXPECT_NEAR(map.centerCoordinate().longitude, place.longitude, 1e-9);
    EXPECT_GE(map.zoomLevel(), 16);
    EXPECT_EQ(map.annotations().size(), 5U) << "one turn marker";
    EXPECT_TRUE(shows(map, place, darkTheme().turn, {9, 0}));
  }
}

TEST(MapExampleTest, ShowsReasonIfThereIsNoRoute) {
  sandbox::Sandbox sandbox(sandbox::MapData::builtInTown());
  ASSERT_TRUE(sandbox.start(0));
  const TestApplication application(TestApplication::Screen::none);
  const std::tuple<std::string, Coordinate, const char*> table[] = {
      {"http://127.0.0.1:1", tripEnd, "No route: the server cannot be reached."},
      {"http://127.0.0.1:1/?key=1", tripEnd, "No route: the URL of the server is not usable."},
      {sandbox.url(), {0, 0}, "No route: There is no road within a kilometer of 0,0"}};
  for (const auto& [backend, end, text] : table) {
    QVBackendless::setBaseURL(backend);
    QVConfiguration::setCachedResponse(nullptr);
    RoutePage page(tripStart, end, lightTheme());
    page.show();
    page.load();
    ASSERT_TRUE(waitUntil([&] { return page.isFinished(); }));
    EXPECT_FALSE(page.hasRoute());
    EXPECT_TRUE(textOf(page).startsWith(text)) << textOf(page).toStdString();
    EXPECT_FALSE(page.findChild<QListWidget*>()->isVisible());
    for (const auto* const label : page.findChildren<QLabel*>())
      EXPECT_FALSE(label->text().startsWith("Connecting"));
  }
}

TEST(MapExampleTest, HelpNeedsNoDisplayAndWrongArgumentsAreRejected) {
  sandbox::expectEach("env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=xcb " + program,
                      {{" --help", 0, "--dark"}});
  const TestApplication application(TestApplication::Screen::none);
  sandbox::expectEach(
      program,
      {{"", 2, "needs "},
       {" --from 1,2", 2, "needs "},
       {" --from 1,2 --to 3", 2, "needs "},
       {" --from 1,2 --to 3,4 --width 0", 2, "needs "},
       {" --from 1,2 --to 3,4 --backend localhost:80", 2, "needs "},
       {" --from 1,2 --to 3,4 --backend http://127.0.0.1:1/?key --screenshot /dev/null/x.png", 2,
        "needs "}});
}

}  // namespace

}  // namespace quorvelkit::test
