// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "tests/support/TestServer.h"

#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelPlatform/MainQueue.h>

#include <QtCore/QBuffer>

#include <QLabel>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QScrollArea>
#include <atomic>
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

// What the process prints and logs from here on, but for what Qt says of OpenGL.
class Printed {
 public:
  Printed() {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
      if (text.startsWith("QXcbIntegration: ")) return;
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
  view.setTileHost(QUrl(QString::fromStdString(server.url("/tiles"))), "&copy; Tile <b>makers</b>");
  view.show();
  EXPECT_EQ(view.findChild<QLabel*>()->text(), QString::fromUtf8("© Tile makers"));
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
      {missing.url("/style.json"), plainGround, "HTTP status 404"},
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
  // No address and no answer that holds a secret gets into the note.
  view.setStyleURL(missing.url("/style.json?access_token=secret"));
  EXPECT_TRUE(waitUntil([&] { return view.engineNote().contains("HTTP status 404"); }));
  EXPECT_FALSE(view.engineNote().contains("secret")) << view.engineNote().toStdString();
  // Nobody is left waiting when the view goes while its style is on the way.
  MGLMapView(QRect(0, 0, 10, 10)).setStyleURL(good.url("/late"));
  EXPECT_EQ(printed.text(), "");
}

// A style of one source, with something more at its top.
QByteArray styleWith(const QByteArray& source, const QByteArray& more = "") {
  return R"({"version":8,"sources":{"a":)" + source +
         R"(},"layers":[{"id":"b","type":"background","paint":{"background-color":"#006000"}}])" +
         more + "}";
}

// The plugin of the engine would add an access token that is somebody else's.
TEST(MapStyleTest, StylesThatNeedTheEnginesOwnTokenAreRefusedBeforeAnythingIsLookedUp) {
  const TestApplication application;
  std::atomic<int> lookUps = 0;
  const TestServer other([&](const ReceivedRequest& request, Connection& to) {
    lookUps += request.target.starts_with("/foreign") ? 0 : 1;
    to.answer(200, R"({"tiles":["mapbox://tiles/x/{z}/{x}/{y}"]})");
  });
  const QByteArray url = QByteArray::fromStdString(other.url("/"));
  const QByteArray ours = R"({"type":"vector","url":")" + url + R"("})";
  const std::pair<QByteArray, const char*> table[] = {
      {styleWith(R"({"type":"vector","url":"mapbox://a.b"})"), "source a"},
      {styleWith(R"({"type":"raster","tiles":[")" + url + R"(","mapbox://tiles/a"]})"), "source a"},
      {styleWith(R"({"type":"geojson","data":"Mapbox://a.b"})"), "source a"},
      {styleWith(ours, R"(,"sprite":"mapbox://sprites/a/b")"), "sprite"},
      {styleWith(ours, R"(,"sprite":[{"id":"x","url":"mapbox://sprites/a/b"}])"), "sprite"},
      {styleWith(ours, R"(,"glyphs":"mapbox://fonts/a/{fontstack}/{range}.pbf")"), "glyphs"},
      {styleWith(ours, R"(,"imports":[{"id":"x","url":"mapbox://styles/a/b"}])"), "imports"}};
  ViewOfRoute view;
  view.show();
  for (const auto& [style, part] : table) {
    view.setStyleURL(application.file("style.json", style));
    EXPECT_TRUE(view.engineNote().contains(QString("its %1 has a mapbox: address").arg(part)))
        << part << ": " << view.engineNote().toStdString();
    EXPECT_TRUE(shows(view, {0.005, 0.005}, plainGround)) << part;
  }
  EXPECT_EQ(lookUps, 0);
  // A source's description may name them too: the rest of the style is drawn without it.
  const QByteArray foreign = QByteArray::fromStdString(other.url("/foreign"));
  view.setStyleURL(
      application.file("style.json", styleWith(R"({"type":"vector","url":")" + foreign + R"("})")));
  EXPECT_TRUE(shows(view, {0.005, 0.005}, QColor(0, 0x60, 0)));
  EXPECT_TRUE(view.engineNote().contains("source a: it has a mapbox: address"));
}

// What fails in a style is in the note and nowhere else; the style itself is asked for once.
TEST(MapStyleTest, TheNoteTellsWhatOfAStyleFailedAndNothingIsAskedForTwice) {
  const Printed printed;
  const TestApplication application;
  std::atomic<int> styles = 0, descriptions = 0;
  std::string style;
  const TestServer server([&](const ReceivedRequest& request, Connection& to) {
    if (request.target == "/style") return to.answer(++styles == 1 ? 200 : 500, style);
    if (request.target == "/tj")
      return to.answer(++descriptions == 1 ? 200 : 500,
                       R"({"tiles":["http://127.0.0.1:1/{z}"],"maxzoom":3})");
    to.answer(404, "");
  });
  style = R"({"version":8,"sprite":"HOST/sprite","glyphs":"HOST/{fontstack}/{range}.pbf",
    "sources":{"gone":{"type":"geojson","data":"HOST/data"},"none":{"type":"vector","url":"HOST/no"},
      "described":{"type":"raster","url":"HOST/tj"},
      "points":{"type":"geojson","data":{"type":"Point","coordinates":[0,0]}}},
    "layers":[{"id":"b","type":"background","paint":{"background-color":"#006000"}},
      {"id":"d","type":"raster","source":"described"},{"id":"w","type":"strange"},
      {"id":"g","type":"line","source":"gone"},{"id":"n","type":"line","source":"nowhere"},
      {"id":"t","type":"symbol","source":"points","layout":{"text-field":"x","text-font":["X"]}}]})";
  const std::string host = "HOST", address = server.url("");
  for (std::size_t at; (at = style.find(host)) != std::string::npos;)
    style.replace(at, host.size(), address);
  ViewOfRoute view;
  view.show();
  view.setStyleURL(QUrl(QString::fromStdString(server.url("/style"))));
  EXPECT_TRUE(shows(view, {0.005, 0.005}, QColor(0, 0x60, 0)));
  for (const char* const failed :
       {"source none: HTTP status 404", "source gone: ", "sprite: ", "glyph range", "for layer 'n'",
        "invalid layer type", "tiles of source described: "}) {
    EXPECT_TRUE(waitUntil([&] {
      view.grab();
      return view.engineNote().contains(failed);
    })) << failed
        << ": " << view.engineNote().toStdString();
  }
  EXPECT_EQ(view.engineNote().count("tiles of source"), 1);
  EXPECT_EQ(styles, 1);
  EXPECT_EQ(descriptions, 1);
  view.setStyleURL(QUrl());
  EXPECT_EQ(view.engineNote(), byMapboxgl) << "of the style before";
  qWarning("[ ERROR ] of the application's own");
  EXPECT_EQ(printed.text(), "[ ERROR ] of the application's own\n");
}

// Two sources with notices of their own, and two that leave it to their descriptions; one of these
// is missing.
TEST(MapStyleTest, NoticesOfTheSourcesAreShownAsTextAndLinksInsideTheView) {
  const TestApplication application;
  OneAnswerServer description(200, R"({"tiles":[],"attribution":"&copy; Their surveyors"})");
  OneAnswerServer missing(404, R"({"attribution":"nobody"})");
  const QByteArray notice = R"(<h1>&copy;</h1><img src='file:///x.png' width=300 height=300>)"
                            R"(<a href='https://a.example/?b=1&amp;c'>Some <b>body</b></a>)"
                            R"( <a href='file:///etc/passwd'>with</a><style>@import 'x';</style>)"
                            R"(<a href='javascript:x()'> a <table><tr><td>long</td></tr></table>)";
  OneAnswerServer server(200, R"({"version":8,"layers":[],"sources":{
      "a":{"type":"geojson","data":{"type":"FeatureCollection","features":[]},"attribution":")" +
                                  notice + R"("},
      "b":{"type":"raster","tiles":[],"attribution":")" +
                                  notice + R"("},
      "c":{"type":"vector","url":")" +
                                  description.url("/").toEncoded() +
                                  R"("},
      "d":{"type":"vector","url":")" +
                                  missing.url("/").toEncoded() + R"("}}})");
  const QString whole = QString::fromUtf8(
      "© <a href=\"https://a.example/?b=1&amp;c\">Some body</a> with a long"
      " © Their surveyors");
  MGLMapView view(QRect(0, 0, 600, 200));
  auto* const label = view.findChild<QLabel*>();
  view.show();
  EXPECT_FALSE(label->isVisible());
  view.setStyleURL(server.url("/"));
  EXPECT_TRUE(waitUntil([&] { return label->text() == whole; })) << label->text().toStdString();
  for (const QSize& size : {QSize(600, 200), QSize(120, 200), QSize(60, 40), QSize(600, 300)}) {
    view.resize(size);
    EXPECT_TRUE(label->isVisible());
    EXPECT_TRUE(view.rect().contains(label->geometry()));
    EXPECT_LE(label->height(), 3 * label->fontMetrics().lineSpacing());
    EXPECT_EQ(view.childAt(label->geometry().center()), label) << "nothing lies above it";
    EXPECT_EQ(label->text().contains(u'…'), size.width() < 200);
    const auto* const bar = view.findChild<QWidget*>("scaleBar");
    EXPECT_TRUE(size.height() < 100 || !label->geometry().intersects(bar->geometry()));
  }
  // The sign opens the whole notice in a window of its own.
  view.resize(120, 200);
  Q_EMIT label->linkActivated("more:");
  const auto* const popup = qobject_cast<QScrollArea*>(QApplication::activePopupWidget());
  ASSERT_NE(popup, nullptr);
  EXPECT_TRUE(qobject_cast<QLabel*>(popup->widget())->text().endsWith("Their surveyors"));
  view.setStyleURL(QUrl());
  EXPECT_FALSE(label->isVisible());
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
