// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "examples/map/RouteWindow.h"
#include "tests/kit/FakeServer.h"

#include <QuorvelKit/QVRouteWidget.h>
#include <QuorvelKit/QVViewController.h>
#include <QuorvelMap/MGLMapViewDelegate.h>

#include <gmock/gmock.h>
#include <unistd.h>

#include <QFile>
#include <QScreen>
#include <QTimer>
#include <array>

namespace quorvelkit::test {

namespace {

using Screen = TestApplication::Screen;

constexpr const char* routePath = "/v4/route";
constexpr const char* twoPoints =
    R"({"points":[{"lat":39.28,"lon":-76.63},{"lat":39.28,"lon":-76.61}]})";

// Counts what the life cycle does.
class CountingController : public QVViewController {
 public:
  using QVViewController::QVViewController;
  int loads = 0;
  int layouts = 0;

 protected:
  void viewDidLoad() override {
    ++loads;
    EXPECT_TRUE(isViewLoaded());
    QVViewController::viewDidLoad();
    EXPECT_EQ(mapview()->parentWidget(), view());
  }
  void viewDidLayoutSubviews() override {
    ++layouts;
    QVViewController::viewDidLayoutSubviews();
  }
};

// Starts before the application object, so that its folder and queue outlive it.
class QVViewControllerTest : public testing::Test {
 protected:
  template <class Controller = QVViewController>
  static std::shared_ptr<Controller> makeReady() {
    auto controller = QVViewController::make<Controller>();
    controller->setOrigin({39.28, -76.63});
    controller->setDestination({39.30, -76.60});
    return controller;
  }
  std::size_t routeRequests() {
    std::size_t count = 0;
    for (const URLRequest& request : server_.requests())
      count += request.url().path() == routePath ? 1 : 0;
    return count;
  }
  // Lets the answer come in and be drawn.
  void loadAndDraw(QVViewController& controller, const std::string& body) {
    server_.set(routePath, {200, body});
    controller.view();
    const std::weak_ptr<QVViewController> held = controller.weak_from_this();
    EXPECT_TRUE(waitUntil([&] { return held.use_count() == 1; })) << "the handler has run";
  }

  FakeServer server_;
  TestApplication application_{Screen::none};
};

TEST(QVViewControllerMakeTest, GivesNothingWithoutAnApplication) {
  EXPECT_EQ(QVViewController::make(), nullptr);
}

TEST_F(QVViewControllerTest, IsNewOnceMadeAndRequestsOnceItsViewLoads) {
  const auto controller = QVViewController::make<CountingController>();
  EXPECT_EQ(controller->mapview()->frame(),
            QRect(QPoint(0, 0), QGuiApplication::primaryScreen()->size()));
  EXPECT_EQ(controller->mapview()->delegate(), controller);
  EXPECT_FALSE(controller->route());
  EXPECT_FALSE(controller->delegate());
  EXPECT_FALSE(controller->isViewLoaded());

  controller->setOrigin({39.25, -76.5});
  controller->setDestination({39.5, -76.75});
  server_.set(routePath, {200, twoPoints});
  controller->view()->resize(500, 300);
  controller->view()->show();
  EXPECT_EQ(controller->loads, 1);
  EXPECT_GE(controller->layouts, 1);
  EXPECT_EQ(controller->mapview()->frame(), QRect(0, 0, 500, 300));
  const int layouts = controller->layouts;
  controller->view()->resize(640, 480);
  EXPECT_EQ(controller->layouts, layouts + 1);
  EXPECT_EQ(controller->mapview()->frame(), QRect(0, 0, 640, 480));

  EXPECT_TRUE(waitUntil([&] { return controller->route().has_value(); }));
  const auto requests = server_.requests();
  ASSERT_EQ(requests.size(), 3U);
  const std::string query(requests[2].url().query().value_or(""));
  for (const char* const part :
       {"startLat=39.25", "startLon=-76.5", "endLat=39.5", "endLon=-76.75", "DepartureTime"}) {
    EXPECT_NE(query.find(part), std::string::npos) << query;
  }
  EXPECT_EQ(controller->loads, 1);
}

TEST_F(QVViewControllerTest, DrawsMarkersAtTheRoutesEndsAndALineThroughAllPoints) {
  struct Case {
    const char* body;
    std::vector<Coordinate> points;
  };
  const Case table[] = {
      {twoPoints, {{39.28, -76.63}, {39.28, -76.61}}},
      {R"({"points":[{"lat":1,"lon":2}]})", {{1, 2}}},
      {R"({"points":[{"lat":1,"lon":2},{"lat":3},{"lat":"4","lon":5}]})", {{1, 2}, {0, 0}, {0, 0}}},
      {"{}", {}}};
  for (const auto& [body, points] : table) {
    const auto controller = makeReady();
    const Coordinate center = controller->mapview()->centerCoordinate();
    loadAndDraw(*controller, body);
    EXPECT_TRUE(controller->route()) << body;
    const auto& annotations = controller->mapview()->annotations();
    ASSERT_EQ(annotations.size(), points.empty() ? 1U : 3U) << body;
    const auto* line = dynamic_cast<const MGLPolyline*>(annotations.back().get());
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->coordinates(), points) << body;
    for (std::size_t i = 0; i + 1 < annotations.size(); ++i) {
      const auto* marker = dynamic_cast<const MGLPointAnnotation*>(annotations[i].get());
      ASSERT_NE(marker, nullptr);
      EXPECT_EQ(marker->title(), i == 0 ? "origin" : "destination");
      EXPECT_EQ(marker->coordinate(), i == 0 ? points.front() : points.back());
    }
    EXPECT_EQ(controller->mapview()->centerCoordinate(), center) << "the viewport stays";
  }
}

struct FailingProtocol : URLProtocol {
  void startLoading(const URLRequest&, std::shared_ptr<URLProtocolClient> client) override {
    client->didFail(Error("Test", 1));
  }
  void stopLoading() override {}
};

TEST_F(QVViewControllerTest, DrawsNothingWhenTheRequestFails) {
  URLProtocol::registerFactory([](const URLRequest& request) {
    return request.url().path() == routePath ? std::make_unique<FailingProtocol>() : nullptr;
  });
  const auto controller = makeReady();
  loadAndDraw(*controller, twoPoints);
  EXPECT_FALSE(controller->route());
  EXPECT_TRUE(controller->mapview()->annotations().empty());
}

// Has all four answers or none, and notes the map view that each was asked with.
struct NotingDelegate : MGLMapViewDelegate {
  bool answers = false;
  std::vector<const MGLMapView*> seen;

  template <class T>
  std::optional<T> answer(const MGLMapView& view, T value) {
    seen.push_back(&view);
    return answers ? std::optional<T>(std::move(value)) : std::nullopt;
  }
  std::optional<MGLAnnotationImage> imageForAnnotation(MGLMapView& view,
                                                       const MGLAnnotation&) override {
    return answer(view, MGLAnnotationImage(QImage(2, 2, QImage::Format_RGB32), "two"));
  }
  std::optional<double> lineWidthForPolylineAnnotation(MGLMapView& view,
                                                       const MGLPolyline&) override {
    return answer(view, 7.5);
  }
  std::optional<QColor> strokeColorForShapeAnnotation(MGLMapView& view,
                                                      const MGLAnnotation&) override {
    return answer(view, QColor(Qt::green));
  }
  std::optional<double> alphaForShapeAnnotation(MGLMapView& view, const MGLAnnotation&) override {
    return answer(view, 0.25);
  }
};

TEST_F(QVViewControllerTest, ForwardsStylingToTheDelegateAndAnswersWhereThatDoesNot) {
  const auto controller = QVViewController::make();
  controller->mapview()->setTintColor(Qt::magenta);
  MGLMapView other;
  const MGLPolyline line({});
  const auto expect = [&](std::optional<std::string> image, double width, const QColor& color,
                          double alpha) {
    const auto given = controller->imageForAnnotation(other, line);
    EXPECT_EQ(given ? given->reuseIdentifier() : "", image.value_or(""));
    EXPECT_EQ(controller->lineWidthForPolylineAnnotation(other, line), width);
    EXPECT_EQ(controller->strokeColorForShapeAnnotation(other, line), color);
    EXPECT_EQ(controller->alphaForShapeAnnotation(other, line), alpha);
  };
  const auto expectDefaults = [&] { expect(std::nullopt, 3, Qt::magenta, 1); };

  expectDefaults();
  auto delegate = std::make_shared<NotingDelegate>();
  controller->setDelegate(delegate);
  expectDefaults();
  EXPECT_EQ(delegate->seen, std::vector<const MGLMapView*>(4, controller->mapview()));
  delegate->answers = true;
  expect("two", 7.5, Qt::green, 0.25);
  delegate.reset();
  EXPECT_FALSE(controller->delegate()) << "it is held weakly";
  expectDefaults();
}

TEST_F(QVViewControllerTest, DrawsWithItsDefaultsWhatTheDelegateDoesNotImplement) {
  struct WidthOnly : MGLMapViewDelegate {
    std::optional<double> lineWidthForPolylineAnnotation(MGLMapView&, const MGLPolyline&) override {
      return 12;
    }
  };
  const auto delegate = std::make_shared<WidthOnly>();
  const auto controller = makeReady();
  controller->setDelegate(delegate);
  MGLMapView& map = *controller->mapview();
  map.setTintColor(QColor(0, 0, 200));
  controller->view()->resize(400, 300);
  loadAndDraw(*controller, twoPoints);
  controller->view()->show();
  map.setVisibleCoordinates({{39.28, -76.63}, {39.28, -76.61}});
  EXPECT_TRUE(shows(map, {39.28, -76.62}, QColor(0, 0, 200), {0, -4}));
  EXPECT_TRUE(shows(map, {39.28, -76.62}, plainGround, {0, 8}));
}

TEST_F(QVViewControllerTest, LivesUntilItsAnswerIsDrawnAlsoWhenItsWindowIsClosedMeanwhile) {
  server_.set(routePath, {200, twoPoints, true});
  auto controller = makeReady<CountingController>();
  const auto delegate = std::make_shared<NotingDelegate>();
  controller->setDelegate(delegate);
  auto window = std::make_unique<QWidget>();
  controller->view()->setParent(window.get());
  window->show();
  EXPECT_TRUE(waitUntil([&] { return routeRequests() == 1; }));
  window.reset();
  EXPECT_FALSE(controller->isViewLoaded());

  // Loaded again, the screen requests again, and the map goes along.
  controller->view()->show();
  EXPECT_EQ(controller->loads, 2);
  EXPECT_EQ(controller->mapview()->parentWidget(), controller->view());
  EXPECT_TRUE(waitUntil([&] { return routeRequests() == 2; }));
  controller->view()->close();

  const std::weak_ptr<CountingController> watched = controller;
  const QPointer<MGLMapView> map = controller->mapview();
  controller.reset();
  EXPECT_FALSE(watched.expired());
  server_.release();
  EXPECT_TRUE(waitUntil([&] { return watched.expired(); }));
  EXPECT_EQ(delegate->seen.size(), 2 * 5U) << "both answers were drawn";
  EXPECT_TRUE(map.isNull());
}

TEST_F(QVViewControllerTest, AMapTheApplicationDestroyedIsNotDrawnOn) {
  const auto controller = makeReady();
  delete controller->mapview();
  EXPECT_EQ(controller->mapview(), nullptr);
  loadAndDraw(*controller, twoPoints);
  EXPECT_TRUE(controller->route());
}

TEST_F(QVViewControllerTest, StopsTheProcessWhenAnEndIsMissing) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
#ifdef NDEBUG
  const char* const noOrigin = "unexpectedly found nil while unwrapping an Optional value";
  const char* const noDestination = noOrigin;
#else
  const char* const noOrigin = "Origin must be set\\.";
  const char* const noDestination = "Destination must be set\\.";
#endif
  const auto controller = QVViewController::make();
  EXPECT_DEATH(controller->view(), noOrigin);
  EXPECT_DEATH((void)controller->origin(), "unexpectedly found nil");
  EXPECT_DEATH((void)controller->destination(), "unexpectedly found nil");
  controller->setOrigin({1, 2});
  EXPECT_EQ(controller->origin(), (Coordinate{1, 2}));
  EXPECT_DEATH(controller->view(), noDestination);

  QPalette colorless;
  colorless.setColor(QPalette::Highlight, QColor());
  controller->mapview()->setPalette(colorless);
  EXPECT_DEATH(controller->strokeColorForShapeAnnotation(*controller->mapview(), MGLPolyline({})),
               "unexpectedly found nil");
}

TEST_F(QVViewControllerTest, FillsTheWidgetForForms) {
  server_.set(routePath, {200, twoPoints});
  QWidget window;
  window.resize(400, 300);
  auto* const widget = new QVRouteWidget(&window);
  widget->resize(400, 300);
  const auto controller = widget->controller();
  controller->setOrigin({39.28, -76.63});
  controller->setDestination({39.28, -76.61});
  EXPECT_FALSE(controller->isViewLoaded());
  window.show();
  EXPECT_TRUE(waitUntil([&] { return controller->mapview()->annotations().size() == 3; }));
  widget->resize(320, 200);
  EXPECT_EQ(controller->mapview()->frame(), QRect(0, 0, 320, 200));
  EXPECT_TRUE(controller->mapview()->isVisible());
  delete widget;
  EXPECT_FALSE(controller->isViewLoaded());
}

TEST_F(QVViewControllerTest, TheCodeInTheDocumentOpensAWindow) {
  const auto contents = [](const char* path) {
    QFile file(QStringLiteral(QUORVELKIT_SOURCE_DIR "/") + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  };
  const QByteArray code = contents("examples/map/RouteWindow.h");
  EXPECT_TRUE(contents("docs/map.md")
                  .contains("```cpp examples/map/RouteWindow.h\n" +
                            code.mid(code.indexOf("#include")) + "```\n"));
  server_.set(routePath, {200, twoPoints});
  const auto screen = openRouteWindow({1, 2}, {3, 4}, QUrl());
  EXPECT_TRUE(screen->view()->isVisible());
  EXPECT_TRUE(waitUntil([&] { return screen->route().has_value(); }));
}

// Lives as long as its handler, which nobody may call or destroy.
struct Undying : QVViewController {
  using QVViewController::QVViewController;
  ~Undying() override { abort(); }
};

class QVViewControllerEndTest : public testing::TestWithParam<std::string> {
 protected:
  [[noreturn]] static void end(const std::string& ending) {
    FakeServer server;
    server.set(routePath, {200, twoPoints, true});
    auto application = std::make_unique<TestApplication>();
    auto screen = QVViewController::make<Undying>();
    screen->setOrigin({1, 2});
    screen->setDestination({3, 4});
    screen->view()->show();
    MGLMapView& map = *screen->mapview();
    map.addAnnotations({makeLine({{0, -50}, {0, 50}})});
    if (!shows(map, {0, 0}, map.tintColor()) || server.requests(3).size() < 3) _exit(8);
    if (ending == "WindowClosed") QTimer::singleShot(0, screen->view(), &QWidget::close);
    if (ending == "Quit") QTimer::singleShot(0, &QCoreApplication::quit);
    if (ending == "ExitInAHandler") MainQueue::main().async([] { exit(0); });
    if (ending != "MainReturns") QApplication::exec();
    screen.reset();
    application.reset();
    exit(0);
  }
};

TEST_P(QVViewControllerEndTest, TheProcessEndsQuietlyWhileTheRequestIsUnderWay) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(end(GetParam()), testing::ExitedWithCode(0),
              testing::MatchesRegex("([^\n]*GPU Identifier[^\n]*\n)?"));
}

INSTANTIATE_TEST_SUITE_P(All, QVViewControllerEndTest,
                         testing::Values("WindowClosed", "Quit", "ExitInAHandler", "MainReturns"),
                         [](const auto& test) { return test.param; });

TEST(QVViewControllerScreenTest, RoutesAreSeenOnTheMapsOfTwoScreensAtOnce) {
  FakeServer server;
  server.set(routePath, {200, twoPoints});
  const TestApplication application;
  const std::array colors = {QColor(0, 0, 200), QColor(0, 120, 0)};
  std::vector<std::shared_ptr<QVViewController>> screens;
  for (const QColor& color : colors) {
    const auto controller = screens.emplace_back(QVViewController::make());
    controller->setOrigin({39.28, -76.63});
    controller->setDestination({39.28, -76.61});
    MGLMapView& map = *controller->mapview();
    map.setTintColor(color);
    controller->view()->resize(500, 400);
    controller->view()->show();
    map.setVisibleCoordinates({{39.28, -76.63}, {39.28, -76.61}}, QMargins(60, 80, 60, 20));
  }
  const auto expectRoutes = [&] {
    for (std::size_t i = 0; i < screens.size(); ++i) {
      MGLMapView& map = *screens[i]->mapview();
      EXPECT_TRUE(shows(map, {39.28, -76.62}, colors[i]));
      EXPECT_TRUE(shows(map, {39.28, -76.62}, plainGround, {0, 4}));
      for (const double longitude : {-76.63, -76.61})
        EXPECT_TRUE(shows(map, {39.28, longitude}, QColor(0xd6, 0x33, 0x3f), {0, -12}));
    }
  };
  expectRoutes();
  // Both go into one window.
  QWidget window;
  for (const auto& screen : screens) {
    screen->view()->setParent(&window);
    screen->view()->show();
  }
  window.show();
  expectRoutes();
  screens.clear();
}

}  // namespace

}  // namespace quorvelkit::test
