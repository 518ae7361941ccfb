// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "tests/support/TestServer.h"

#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelPlatform/MainQueue.h>

#include <QtCore/QBuffer>

#include <QLabel>
#include <QMouseEvent>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QWheelEvent>
#include <thread>

namespace quorvelkit::test {

namespace {

using Screen = TestApplication::Screen;

// Answers every request with one status and body.
struct OneAnswerServer {
  OneAnswerServer(int status, const QByteArray& body)
      : server([=](const auto&, Connection& to) { to.answer(status, body.toStdString()); }) {}

  QUrl url(const char* path) const { return QUrl(QString::fromStdString(server.url(path))); }

  TestServer server;
};

// A view of a broad line through (0, 0) and a marker on it.
struct ViewOfRoute : MGLMapView {
  ViewOfRoute() : MGLMapView(QRect(0, 0, 400, 300)) {
    setTintColor(QColor(0, 0, 200));
    setZoomLevel(13);
    addAnnotations({makeLine({{-0.01, -0.01}, {0, 0}, {0, 0.01}}), makeMarker({0, 0}, "origin")});
  }
  // The route is seen, and the note names the engine and what stood in the way of another.
  void expectRoute(const char* note, const char* reason) {
    EXPECT_TRUE(shows(*this, {0, 0.005}, QColor(0, 0, 200)));
    EXPECT_TRUE(shows(*this, {0, 0}, pinColor, {0, -12}));
    EXPECT_TRUE(engineNote().startsWith(note) && engineNote().contains(reason))
        << engineNote().toStdString();
  }
};

constexpr const char* plain = "Drawn without a map, on a plain background.";
constexpr const char* byMapboxgl = "Drawn by Qt Location's engine mapboxgl.";

// What the process prints and logs from here on, but for what Qt and the engine say of OpenGL.
class Printed {
 public:
  Printed() {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
      if (text.contains("GPU Identifier") || text.startsWith("QXcbIntegration: ")) return;
      std::cerr << text.toStdString() << '\n';
    });
  }
  std::string text() const {
    qInstallMessageHandler(nullptr);
    return testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
  }
};

struct Missing {
  const char *name, *plugin;
  Screen screen;
  const char *setting, *reason;

  friend std::ostream& operator<<(std::ostream& out, const Missing& m) { return out << m.name; }
};

// What Qt has loaded once stays loaded: each case has a process of its own.
class MapFallbackTest : public testing::TestWithParam<Missing> {};

TEST_P(MapFallbackTest, TheRouteIsSeenTheNoteTellsWhatIsMissingAndNothingIsPrinted) {
  const Printed printed;
  const QByteArray setting = GetParam().setting;
  const int sign = setting.indexOf('=');
  if (sign > 0) qputenv(setting.left(sign), setting.mid(sign + 1));
  TestApplication application(GetParam().screen);
  application.hidePlugin(GetParam().plugin);
  ViewOfRoute view;
  view.show();
  view.expectRoute(*GetParam().reason == 0 ? byMapboxgl : plain, GetParam().reason);
  EXPECT_EQ(printed.text(), "");
}

constexpr const char* noOpenGL = "mapboxgl: OpenGL cannot be used here";

INSTANTIATE_TEST_SUITE_P(
    All, MapFallbackTest,
    testing::Values(
        Missing{"Nothing", "", Screen::x11, "", ""},
        Missing{"SQLite", "sqldrivers/libqsqlite.so", Screen::x11, "", "SQLite driver is missing"},
        Missing{"Mapboxgl", "geoservices/libqtgeoservices_mapboxgl.so", Screen::x11, "",
                "Qt Location has no plugin"},
        Missing{"OpenGL", "", Screen::none, "", noOpenGL},
        Missing{"OpenGLOnAScreen", "", Screen::x11, "QT_XCB_GL_INTEGRATION=none", noOpenGL},
        Missing{"OpenGLInQtQuick", "", Screen::x11, "QT_QUICK_BACKEND=software",
                "Qt Quick draws without OpenGL here"}),
    [](const auto& test) { return test.param.name; });

TEST(MapFailureTest, TheRouteIsSeenWhenTheSceneGraphFailsLater) {
  const Printed printed;
  const TestApplication application;
  ViewOfRoute view;
  view.show();
  for (int failure = 0; failure < 2; ++failure) {
    auto* const scene = view.findChild<QQuickWidget*>();
    ASSERT_NE(scene, nullptr);
    EXPECT_TRUE(view.engineNote().startsWith(byMapboxgl)) << view.engineNote().toStdString();
    // Qt tells of it as often as it tries to draw.
    for (int i = 0; i < 2; ++i)
      Q_EMIT scene->sceneGraphError(QQuickWindow::ContextNotAvailable, "no context");
    EXPECT_TRUE(waitUntil([&] { return view.findChild<QQuickWidget*>() == nullptr; }));
    view.expectRoute(plain, "Qt Quick: no context");
    // A new style is a new attempt.
    view.setStyleURL(QUrl());
  }
  EXPECT_EQ(printed.text(), "");
}

// What is under the mouse stays under it, while the map is dragged and while it is zoomed.
TEST(PlainMapTest, IsMovedByTheMouseAndZoomedByTheWheel) {
  const TestApplication application(Screen::none);
  ViewOfRoute view;
  view.show();
  view.expectRoute(plain, "");
  QWidget* const ground = view.childAt(view.rect().center());
  const auto move = [&](QEvent::Type type, const QPointF& to) {
    QMouseEvent event(type, to, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(ground, &event);
  };
  const auto expectAt = [&](const QPointF& place, Coordinate position) {
    EXPECT_LT((view.convertCoordinate(position) - place).manhattanLength(), 0.01);
  };
  const QPointF from(200, 150), to(120, 190);
  move(QEvent::MouseButtonPress, from);
  move(QEvent::MouseMove, QPointF(150, 150));
  move(QEvent::MouseMove, to);
  expectAt(to, {0, 0});
  QWheelEvent wheel(to, to, QPoint(), QPoint(0, 480), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(ground, &wheel);
  EXPECT_DOUBLE_EQ(view.zoomLevel(), 14);
  expectAt(to, {0, 0});
  view.removeAnnotations(view.annotations());
  EXPECT_TRUE(view.annotations().empty());
  EXPECT_TRUE(shows(view, {0, 0}, plainGround));
}

TEST(MapTilesTest, TilesOfTheHostAreDrawnWithoutTheFirstEngine) {
  TestApplication application;
  application.hidePlugin("geoservices/libqtgeoservices_mapboxgl.so");
  QByteArray png;
  QBuffer buffer(&png);
  filledImage({256, 256}, QColor(0, 120, 0)).save(&buffer, "PNG");
  const TestServer server([&](const ReceivedRequest& request, Connection& connection) {
    const bool isTile = request.target.starts_with("/tiles/14/");
    connection.answer(isTile ? 200 : 404, isTile ? png.toStdString() : "");
  });
  ViewOfRoute view;
  view.setTileHost(QUrl(QString::fromStdString(server.url("/tiles"))));
  view.show();
  EXPECT_TRUE(shows(view, {0.005, 0.005}, QColor(0, 120, 0)));
  view.expectRoute("Drawn by Qt Location's engine osm.", "mapboxgl: ");
}

TEST(MapStyleTest, StylesAreReadFromEachKindOfURLAndBadOnesLeaveTheRouteOnTheDefault) {
  const Printed printed;
  const TestApplication application;
  OneAnswerServer good(200, styleWithGround("#006000"));
  OneAnswerServer missing(404, styleWithGround("#600000"));
  OneAnswerServer notAStyle(200, R"({"version":7,"layers":[]})");
  const std::tuple<QUrl, QColor, const char*> table[] = {
      {good.url("/style.json"), QColor(0, 0x60, 0), ""},
      {missing.url("/style.json"), plainGround, "server replied: Status"},
      {application.file("good file.json", styleWithGround("#000060")), QColor(0, 0, 0x60), ""},
      {application.file("torn.json", R"({"version":8,"lay)"), plainGround,
       "torn.json could not be read"},
      {QUrl(), plainGround, ""},
      {notAStyle.url("/"), plainGround, "not a Mapbox style"},
      {QUrl::fromLocalFile("/none.json"), plainGround, "No such file"},
      {QUrl("qrc:/none.json"), plainGround, "could not be read"},
      {QUrl("mapbox://styles/a/b"), plainGround, "http, https, file and qrc"},
      {good.url("/again"), QColor(0, 0x60, 0), ""}};
  ViewOfRoute view;
  view.show();
  for (const auto& [url, ground, reason] : table) {
    view.setStyleURL(url);
    EXPECT_EQ(view.styleURL(), url);
    EXPECT_TRUE(shows(view, {0.005, 0.005}, ground)) << url.toString().toStdString();
    EXPECT_TRUE(waitUntil([&, why = reason] { return view.engineNote().contains(why); }))
        << reason << " / " << view.engineNote().toStdString();
    EXPECT_EQ(view.engineNote().contains("could not be read"), *reason != 0);
    view.expectRoute(byMapboxgl, "");
  }
  // Nobody is left waiting when the view goes while its style is on the way.
  MGLMapView(QRect(0, 0, 10, 10)).setStyleURL(good.url("/late"));
  EXPECT_EQ(printed.text(), "");
}

// Two sources with notices of their own, and two that leave it to their descriptions; one of these
// is missing.
TEST(MapStyleTest, NoticesOfTheSourcesAreShownOnTheMapInsideTheView) {
  const TestApplication application;
  OneAnswerServer description(200, R"({"tiles":[],"attribution":"&copy; Their surveyors"})");
  OneAnswerServer missing(404, R"({"attribution":"nobody"})");
  OneAnswerServer server(200, R"({"version":8,"layers":[],"sources":{
      "a":{"type":"geojson","data":{"type":"FeatureCollection","features":[]},
           "attribution":"&copy; Somebody with a long name"},
      "b":{"type":"raster","tiles":[],"attribution":"&copy; Somebody with a long name"},
      "c":{"type":"vector","url":")" +
                                  description.url("/").toEncoded() +
                                  R"("},
      "d":{"type":"vector","url":")" +
                                  missing.url("/").toEncoded() + R"("}}})");
  MGLMapView view(QRect(0, 0, 120, 200));
  const auto* const notice = view.findChild<QLabel*>();
  view.show();
  EXPECT_FALSE(notice->isVisible());
  for (int round = 0; round < 2; ++round) {
    view.setStyleURL(server.url("/"));
    EXPECT_TRUE(waitUntil([&] {
      return notice->text() == "&copy; Somebody with a long name &copy; Their surveyors";
    })) << notice->text().toStdString();
    EXPECT_TRUE(notice->isVisible());
    EXPECT_TRUE(view.rect().contains(notice->geometry()));
    EXPECT_GE(notice->height(), notice->heightForWidth(notice->width()));
    EXPECT_EQ(view.childAt(notice->geometry().center()), notice) << "nothing lies above it";
    view.setStyleURL(QUrl());
    EXPECT_FALSE(notice->isVisible());
  }
}

TEST(MainQueueHookTest, BlocksRunInTheLoopOfTheApplicationThatIsThere) {
  int late = 0;
  for (int round = 0; round < 2; ++round) {
    const TestApplication application(Screen::none);
    installMainQueueHook();
    int ran = 0;
    std::thread::id where;
    std::thread([&] {
      MainQueue::main().async([&] {
        where = std::this_thread::get_id();
        // A loop inside a handler, as a dialog has one, runs what comes next.
        MainQueue::main().async([&] { ++ran; });
        EXPECT_TRUE(waitUntil([&] { return ran == 1; }));
      });
    }).join();
    EXPECT_TRUE(waitUntil([&] { return where != std::thread::id(); }));
    EXPECT_EQ(where, std::this_thread::get_id());
    EXPECT_EQ(ran, 1);
    // The first round's is on its way when the application ends; the next application runs it.
    EXPECT_EQ(late, round);
    MainQueue::main().async([&] { ++late; });
  }
}

TEST(MainQueueHookTest, AnApplicationsOwnHookStays) {
  const TestApplication application(Screen::none);
  int calls = 0;
  MainQueue::main().setWakeUpHook([&] { ++calls; });
  const MGLMapView view;
  MainQueue::main().async([] {});
  EXPECT_EQ(calls, 1);
  MainQueue::main().setWakeUpHook({});
}

}  // namespace

}  // namespace quorvelkit::test
