// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "tests/support/TestServer.h"

#include <QLabel>
#include <QScrollArea>
#include <atomic>

namespace quorvelkit::test {

namespace {

// Answers every request with the same status and body.
struct FixedAnswerServer {
  FixedAnswerServer(int status, const QByteArray& body)
      : server([=](const auto&, Connection& to) { to.answer(status, body.toStdString()); }) {}

  QUrl url(const char* path) const { return QUrl(QString::fromStdString(server.url(path))); }

  TestServer server;
};

TEST(MapStyleTest, LoadsStylesFromEachURLSchemeAndUsesDefaultAfterFailure) {
  const OutputCapture output;
  const TestApplication application;
  FixedAnswerServer good(200, styleWithBackground("#006000"));
  FixedAnswerServer missing(404, styleWithBackground("#600000"));
  FixedAnswerServer notAStyle(200, R"({"version":7,"layers":[]})");
  const std::tuple<QUrl, QColor, const char*> table[] = {
      {good.url("/style.json"), QColor(0, 0x60, 0), ""},
      {missing.url("/style.json"), plainBackground, "HTTP status 404"},
      {application.file("good file.json", styleWithBackground("#000060")), QColor(0, 0, 0x60), ""},
      {application.file("truncated.json", R"({"version":8,"lay)"), plainBackground,
       "truncated.json could not be used"},
      {application.file("bom.json", "\xEF\xBB\xBF" + styleWithBackground("#606000")),
       QColor(0x60, 0x60, 0), ""},
      {QUrl(), plainBackground, ""},
      {notAStyle.url("/"), plainBackground, "not a Mapbox style"},
      {QUrl::fromLocalFile("/none.json"), plainBackground, "No such file"},
      {QUrl("qrc:/none.json"), plainBackground, "could not be used"},
      {QUrl("mapbox://styles/a/b"), plainBackground, "http, https, file or qrc"},
      {good.url("/again"), QColor(0, 0x60, 0), ""}};
  RouteView view;
  view.show();
  for (const auto& [url, ground, reason] : table) {
    view.setStyleURL(url);
    EXPECT_EQ(view.styleURL(), url);
    EXPECT_TRUE(shows(view, {0.005, 0.005}, ground)) << url.toString().toStdString();
    view.expectNote(reason);
    EXPECT_EQ(view.engineNote().contains("could not be used"), *reason != 0);
    view.expectRoute(byMapboxgl, "");
  }
  // The note does not contain the query of the URL, which may contain a secret.
  view.setStyleURL(missing.url("/style.json?access_token=secret"));
  view.expectNote("HTTP status 404");
  EXPECT_FALSE(view.engineNote().contains("secret")) << view.engineNote().toStdString();
  // A view can be destroyed while its style is loading.
  MGLMapView(QRect(0, 0, 10, 10)).setStyleURL(good.url("/late"));
  EXPECT_EQ(output.text(), "");
}

// A style with one source and further top-level members.
QByteArray styleWith(const QByteArray& source, const QByteArray& more = "") {
  return R"({"version":8,"sources":{"a":)" + source +
         R"(},"layers":[{"id":"b","type":"background","paint":{"background-color":"#006000"}}])" +
         more + "}";
}

// For mapbox: URLs, the engine's plugin would use an access token of a third party.
TEST(MapStyleTest, StylesWithMapboxURLsAreRejectedBeforeAnyRequest) {
  const TestApplication application;
  std::atomic<int> requests = 0;
  const TestServer other([&](const ReceivedRequest& request, Connection& to) {
    requests += request.target.starts_with("/foreign") ? 0 : 1;
    to.answer(200, R"({"tiles":["mapbox://tiles/x/{z}/{x}/{y}"]})");
  });
  const QByteArray url = QByteArray::fromStdString(other.url("/"));
  const QByteArray ours = R"({"type":"vector","url":")" + url + R"("})";
  const std::pair<QByteArray, const char*> table[] = {
      {styleWith(R"({"type":"vector","url":"mapbox://a.b"})"), "source a"},
      {styleWith(R"({"type":"raster","tiles":[")" + url + R"(","mapbox://tiles/a"]})"), "source a"},
      {styleWith(R"({"type":"raster","tiles":[[" \u004dAPBOX:\/\/tiles/a"]]})"), "source a"},
      {styleWith(R"({"type":"geojson","data":"Mapbox://a.b"})"), "source a"},
      {styleWith(ours, R"(,"sprite":"mapbox://sprites/a/b")"), "sprite"},
      {styleWith(ours, R"(,"sprite":[{"id":"x","url":"mapbox://sprites/a/b"}])"), "sprite"},
      {styleWith(ours, R"(,"glyphs":"mapbox://fonts/a/{fontstack}/{range}.pbf")"), "glyphs"},
      {styleWith(ours, R"(,"imports":[{"id":"x","url":"mapbox://styles/a/b"}])"), "imports"}};
  RouteView view;
  view.show();
  for (const auto& [style, part] : table) {
    view.setStyleURL(application.file("style.json", style));
    EXPECT_TRUE(view.engineNote().contains(QString("its %1 has a mapbox: URL").arg(part)))
        << part << ": " << view.engineNote().toStdString();
    EXPECT_TRUE(shows(view, {0.005, 0.005}, plainBackground)) << part;
  }
  EXPECT_EQ(requests, 0);
  // If a TileJSON document contains such a URL, only its source is removed.
  const QByteArray foreign = QByteArray::fromStdString(other.url("/foreign"));
  view.setStyleURL(
      application.file("style.json", styleWith(R"({"type":"vector","url":")" + foreign + R"("})")));
  EXPECT_TRUE(shows(view, {0.005, 0.005}, QColor(0, 0x60, 0)));
  EXPECT_TRUE(view.engineNote().contains("source a: it has a mapbox: URL"));
  // The last of two equal keys is checked and used. The engine itself would use the first.
  view.setStyleURL(application.file(
      "style.json", styleWith(R"({"type":"raster","tiles":[]})",
                              R"(,"sprite":")" + url + R"(","sprite":")" + foreign + "\"")));
  view.expectNote("sprite: ");
  EXPECT_EQ(requests, 0);
}

TEST(MapStyleTest, NoteContainsErrorsOfTheStyleAndDocumentsAreRequestedOnce) {
  const OutputCapture output;
  const TestApplication application;
  std::atomic<int> styles = 0, tileJSONs = 0;
  std::string style;
  const TestServer server([&](const ReceivedRequest& request, Connection& to) {
    if (request.target == "/style") return to.answer(++styles == 1 ? 200 : 500, style);
    if (request.target == "/tj")
      return to.answer(++tileJSONs == 1 ? 200 : 500,
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
  RouteView view;
  view.show();
  view.setStyleURL(QUrl(QString::fromStdString(server.url("/style"))));
  EXPECT_TRUE(shows(view, {0.005, 0.005}, QColor(0, 0x60, 0)));
  for (const char* const failed :
       {"source none: HTTP status 404", "source gone: ", "sprite: ", "glyph range", "for layer 'n'",
        "invalid layer type", "tiles of source described: "})
    view.expectNote(failed);
  EXPECT_EQ(view.engineNote().count("tiles of source"), 1);
  EXPECT_EQ(styles, 1);
  EXPECT_EQ(tileJSONs, 1);
  view.setStyleURL(QUrl());
  EXPECT_EQ(view.engineNote(), byMapboxgl) << "errors of the previous style";
  qWarning("[ ERROR ] of the application");
  std::string printed = output.text();
  // Qt Network prints this if a connection of the engine fails twice.
  const std::string lineOfQt =
      "QNetworkReplyImplPrivate::error: Internal problem, this method must only be called once.\n";
  for (std::size_t at; (at = printed.find(lineOfQt)) != std::string::npos;)
    printed.erase(at, lineOfQt.size());
  EXPECT_EQ(printed, "[ ERROR ] of the application\n");
}

// A source whose attribution does not end its comment, two sources with the same attribution, one
// with an attribution in its TileJSON document, and one whose TileJSON document is missing.
TEST(MapStyleTest, AttributionsAreShownAsTextAndLinksInsideTheView) {
  const TestApplication application;
  FixedAnswerServer tileJSON(200, R"({"tiles":[],"attribution":"&copy; Surveyors"})");
  FixedAnswerServer missing(404, R"({"attribution":"no owner"})");
  const QByteArray attribution =
      R"(<h1>&copy;</h1><img src='file:///x.png' width=300 height=300>)"
      R"(<a href='https://a.example/?b=1&amp;c'>Some <b>body</b></a>)"
      R"( <a href='file:///etc/passwd'>with</a><style>@import 'x';</style>)"
      R"(<a href='javascript:x()'> a <table><tr><td>long</td></tr></table>)";
  FixedAnswerServer server(200, R"({"version":8,"layers":[],"sources":{
      "0":{"type":"raster","tiles":[],"attribution":
          "<a href='HTTPS://b.example'>Owner</a> <a href='http:b'>of</a> it <!-- <a href='x"},
      "a":{"type":"geojson","data":{"type":"FeatureCollection","features":[]},"attribution":")" +
                                    attribution + R"("},
      "b":{"type":"raster","tiles":[],"attribution":")" +
                                    attribution + R"("},
      "c":{"type":"vector","url":")" +
                                    tileJSON.url("/").toEncoded() +
                                    R"("},
      "d":{"type":"vector","url":")" +
                                    missing.url("/").toEncoded() + R"("}}})");
  const QString whole = QString::fromUtf8(
      "<a href=\"https://b.example\">Owner</a> of it © <a "
      "href=\"https://a.example/?b=1&amp;c\">Some body</a> with a long"
      " © Surveyors");
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
    EXPECT_EQ(view.childAt(label->geometry().center()), label) << "another widget covers it";
    EXPECT_EQ(label->text().contains(u'…'), size.width() < 200);
    const auto* const bar = view.findChild<QWidget*>("scaleBar");
    EXPECT_TRUE(size.height() < 100 || !label->geometry().intersects(bar->geometry()));
  }
  // The "…" link opens a popup with the whole text.
  view.resize(120, 200);
  Q_EMIT label->linkActivated("more:");
  const auto* const popup = qobject_cast<QScrollArea*>(QApplication::activePopupWidget());
  ASSERT_NE(popup, nullptr);
  EXPECT_TRUE(qobject_cast<QLabel*>(popup->widget())->text().endsWith("Surveyors"));
  view.setStyleURL(QUrl());
  EXPECT_FALSE(label->isVisible());
}

}  // namespace

}  // namespace quorvelkit::test
