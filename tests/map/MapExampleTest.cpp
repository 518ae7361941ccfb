// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "sandbox/Sandbox.h"
#include "tests/sandbox/RunProgram.h"

namespace quorvelkit::test {

namespace {

// Qt and the OpenGL driver are not for these checks.
const std::string program =
    "ASAN_OPTIONS=detect_leaks=0 TSAN_OPTIONS=ignore_noninstrumented_modules=1 " QUORVEL_MAP;

// The boxes around what has the colour, a gap of some columns between them.
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

TEST(MapExampleTest, SavesAPictureOfTheWholeRouteOnTheStyle) {
  const TestApplication application;
  sandbox::Sandbox sandbox(sandbox::MapData::builtInTown());
  ASSERT_TRUE(sandbox.start(0));
  const std::string file = application.folder().toStdString() + "/route.png";
  const sandbox::Output output =
      sandbox::run(program + " --backend " + sandbox.url() + " --style " + sandbox.url() +
                   "/style.json --from 40.4523,-38.2804 --to 40.4469,-38.1872 --width 500"
                   " --height 320 --screenshot " +
                   file);
  EXPECT_EQ(output.exitCode, 0) << output.err;
  EXPECT_EQ(output.out, "Drawn by Qt Location's engine mapboxgl.\n");
  const QImage picture(QString::fromStdString(file));
  ASSERT_EQ(picture.size(), QSize(500, 320));
  // Whole pins, and the line from one to the other.
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
}

TEST(MapExampleTest, SaysWhatItNeeds) {
  const TestApplication application(TestApplication::Screen::none);
  for (const char* const arguments :
       {"", " --from 1,2", " --from 1,2 --to 3", " --from 1,2 --to 3,4 --width 0"}) {
    const sandbox::Output output = sandbox::run(program + arguments);
    EXPECT_EQ(output.exitCode, 2) << arguments;
    EXPECT_NE(output.err.find("needs --from LAT,LON and --to LAT,LON"), std::string::npos);
  }
}

}  // namespace

}  // namespace quorvelkit::test
