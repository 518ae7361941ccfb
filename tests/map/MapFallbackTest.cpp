// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "tests/support/TestServer.h"

#include <QtCore/QBuffer>

#include <QLabel>
#include <QQuickWidget>
#include <QQuickWindow>

namespace quorvelkit::test {

namespace {

using Screen = TestApplication::Screen;

struct FallbackCase {
  const char *name, *plugin;
  Screen screen;
  const char *setting, *reason;
};

// Qt does not unload plugins, so each case needs its own process. CTest does this.
class MapFallbackTest : public testing::TestWithParam<FallbackCase> {};

TEST_P(MapFallbackTest, ShowsRouteNamesMissingPartAndPrintsNothing) {
  const OutputCapture output;
  const QByteArray setting = GetParam().setting;
  const int sign = setting.indexOf('=');
  if (sign > 0) qputenv(setting.left(sign), setting.mid(sign + 1));
  TestApplication application(GetParam().screen);
  application.hidePlugin(GetParam().plugin);
  RouteView view;
  view.show();
  view.expectRoute(*GetParam().reason == 0 ? byMapboxgl : byPlainPainter, GetParam().reason);
  EXPECT_EQ(output.text(), "");
}

constexpr const char* noOpenGL = "mapboxgl: OpenGL is not available";

INSTANTIATE_TEST_SUITE_P(
    All, MapFallbackTest,
    testing::Values(FallbackCase{"Nothing", "", Screen::x11, "", ""},
                    FallbackCase{"SQLite", "sqldrivers/libqsqlite.so", Screen::x11, "",
                                 "SQLite driver is missing"},
                    FallbackCase{"Mapboxgl", "geoservices/libqtgeoservices_mapboxgl.so",
                                 Screen::x11, "", "Qt Location's plugin is missing"},
                    FallbackCase{"OpenGL", "", Screen::none, "", noOpenGL},
                    FallbackCase{"OpenGLOnAScreen", "", Screen::x11, "QT_XCB_GL_INTEGRATION=none",
                                 noOpenGL},
                    FallbackCase{"OpenGLInQtQuick", "", Screen::x11, "QT_QUICK_BACKEND=software",
                                 "Qt Quick does not use OpenGL"}),
    [](const auto& test) { return test.param.name; });

TEST(MapFailureTest, ShowsRouteAfterSceneGraphError) {
  const OutputCapture output;
  const TestApplication application;
  RouteView view;
  view.show();
  for (int failure = 0; failure < 2; ++failure) {
    auto* const scene = view.findChild<QQuickWidget*>();
    ASSERT_NE(scene, nullptr);
    EXPECT_TRUE(view.engineNote().startsWith(byMapboxgl)) << view.engineNote().toStdString();
    // Qt emits the signal at each attempt to draw.
    for (int i = 0; i < 2; ++i)
      Q_EMIT scene->sceneGraphError(QQuickWindow::ContextNotAvailable, "no context");
    EXPECT_TRUE(waitUntil([&] { return view.findChild<QQuickWidget*>() == nullptr; }));
    view.expectRoute(byPlainPainter, "Qt Quick: no context");
    // A new style restarts the preferred engine.
    view.setStyleURL(QUrl());
  }
  EXPECT_EQ(output.text(), "");
}

TEST(MapTilesTest, TilesAreDrawnIfMapboxGLIsMissing) {
  TestApplication application;
  application.hidePlugin("geoservices/libqtgeoservices_mapboxgl.so");
  QByteArray png;
  QBuffer buffer(&png);
  filledImage({256, 256}, QColor(0, 120, 0)).save(&buffer, "PNG");
  const TestServer server([&](const ReceivedRequest& request, Connection& connection) {
    const bool isTile = request.target.starts_with("/tiles/14/");
    connection.answer(isTile ? 200 : 404, isTile ? png.toStdString() : "");
  });
  RouteView view;
  view.setTileHost(QUrl(QString::fromStdString(server.url("/tiles"))), "&copy; Tile <b>makers</b>");
  view.show();
  EXPECT_EQ(view.findChild<QLabel*>()->text(), QString::fromUtf8("© Tile makers"));
  EXPECT_TRUE(shows(view, {0.005, 0.005}, QColor(0, 120, 0)));
  view.expectRoute("Drawn by Qt Location's engine osm.", "mapboxgl: ");
}

}  // namespace

}  // namespace quorvelkit::test
