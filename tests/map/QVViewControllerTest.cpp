// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "examples/map/RouteWindow.h"
#include "tests/kit/FakeServer.h"

#include <QuorvelKit/QVRouteWidget.h>
#include <QuorvelKit/QVViewController.h>
#include <QuorvelMap/MainQueueHook.h>

#include <gmock/gmock.h>
#include <unistd.h>

#include <QScreen>
#include <QTimer>
#include <thread>

namespace quorvelkit::test {

namespace {

using Screen = TestApplication::Screen;

constexpr const char* routePath = "/v4/route";
constexpr const char* twoPoints =
    R"({"points":[{"lat":39.28,"lon":-76.63},{"lat":39.28,"lon":-76.61}]})";

// Counts the calls of the life cycle functions and stores the responses.
class CountingController : public QVViewController {
 public:
  using QVViewController::QVViewController;
  int loads = 0, layouts = 0;
  std::vector<std::shared_ptr<QVRouteResponse>> responses;
  // The number of annotations when didReceiveRoute() was called.
  std::size_t annotationCount = 0;
  std::function<void()> received = [] {};

 protected:
  void viewDidLoad() override {
    ++loads;
    EXPECT_TRUE(isViewLoaded());
    QVViewController::viewDidLoad();
    if (mapview() != nullptr) {
      EXPECT_EQ(mapview()->parentWidget(), view());
    }
  }
  void viewDidLayoutSubviews() override {
    ++layouts;
    QVViewController::viewDidLayoutSubviews();
  }
  void didReceiveRoute(const std::shared_ptr<QVRouteResponse>& response) override {
    responses.push_back(response);
    EXPECT_EQ(route().has_value(), response->route().has_value());
    annotationCount = mapview() != nullptr ? mapview()->annotations().size() : 0;
    QVViewController::didReceiveRoute(response);
    received();
  }
};

template <class Controller = QVViewController>
std::shared_ptr<Controller> makeReady() {
  auto controller = QVViewController::make<Controller>();
  controller->setOrigin({39.28, -76.63});
  controller->setDestination({39.28, -76.61});
  return controller;
}

// The server is the first member, because its folder and queue must outlive the application object.
class QVViewControllerTest : public testing::Test {
 protected:
  // Loads the view and waits until the route is drawn.
  void loadAndDraw(QVViewController& controller, const char* body) {
    server_.set(routePath, {200, body});
    controller.view();
    const std::weak_ptr<QVViewController> held = controller.weak_from_this();
    EXPECT_TRUE(waitUntil([&] { return held.use_count() == 1; })) << "the handler has run";
  }

  FakeServer server_;
  TestApplication application_{Screen::none};
};

TEST(QVViewControllerMakeTest, ReturnsNullWithoutApplication) {
  EXPECT_EQ(QVViewController::make(), nullptr);
}

TEST_F(QVViewControllerTest, RequestsRouteOnceWhenViewLoads) {
  const auto controller = QVViewController::make<CountingController>();
  EXPECT_EQ(controller->mapview()->frame(),
            QRect(QPoint(0, 0), QGuiApplication::primaryScreen()->size()));
  EXPECT_EQ(controller->mapview()->delegate(), controller);
  EXPECT_FALSE(controller->route());
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
  EXPECT_THAT(std::string(requests[2].url().query().value_or("")),
              testing::StartsWith("startLat=39.25&startLon=-76.5&endLat=39.5&endLon=-76.75&"));
  EXPECT_EQ(controller->loads, 1);
}

TEST_F(QVViewControllerTest, DrawsMarkersAtBothEndsAndLineThroughAllPoints) {
  const std::tuple<const char*, std::size_t, std::vector<Coordinate>> table[] = {
      {twoPoints, 3, {{39.28, -76.63}, {39.28, -76.61}}},
      {R"({"points":[{"lat":1,"lon":2}]})", 3, {{1, 2}}},
      {R"({"points":[{"lat":1,"lon":2},{"lat":3},{"lat":"4","lon":5}]})",
       3,
       {{1, 2}, {0, 0}, {0, 0}}},
      {"{}", 1, {}},
      {"no route", 0, {}}};
  for (const auto& [body, count, points] : table) {
    SCOPED_TRACE(body);
    const auto controller = makeReady<CountingController>();
    const Coordinate center = controller->mapview()->centerCoordinate();
    loadAndDraw(*controller, body);
    EXPECT_EQ(controller->route().has_value(), count > 0);
    ASSERT_EQ(controller->responses.size(), 1U);
    EXPECT_EQ(controller->annotationCount, count);
    const auto& annotations = controller->mapview()->annotations();
    ASSERT_EQ(annotations.size(), count);
    EXPECT_EQ(controller->mapview()->centerCoordinate(), center) << "the viewport does not change";
    if (count == 0) continue;
    const auto* line = dynamic_cast<const MGLPolyline*>(annotations.back().get());
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->coordinates(), points);
    for (std::size_t i = 0; i + 1 < annotations.size(); ++i) {
      const auto* marker = dynamic_cast<const MGLPointAnnotation*>(annotations[i].get());
      ASSERT_NE(marker, nullptr);
      EXPECT_EQ(marker->title(), i == 0 ? "origin" : "destination");
      EXPECT_EQ(marker->coordinate(), i == 0 ? points.front() : points.back());
    }
  }
}

TEST_F(QVViewControllerTest, DelegateDecidesAppearanceAndControllerReturnsDefaults) {
  const auto controller = makeReady<CountingController>();
  controller->mapview()->setTintColor(Qt::magenta);
  MGLMapView other;
  const MGLPolyline line({});
  const auto expect = [&](const std::string& image, double width, QColor color, double alpha) {
    const auto given = controller->imageForAnnotation(other, line);
    EXPECT_EQ(given ? given->reuseIdentifier() : "none", image);
    EXPECT_EQ(controller->lineWidthForPolylineAnnotation(other, line), width);
    EXPECT_EQ(controller->strokeColorForShapeAnnotation(other, line), color);
    EXPECT_EQ(controller->alphaForShapeAnnotation(other, line), alpha);
  };
  const auto expectDefaults = [&] { expect("none", 3, Qt::magenta, 1); };

  expectDefaults();
  const auto without = std::make_shared<MGLMapViewDelegate>();
  controller->setDelegate(without);
  expectDefaults();
  auto delegate = std::make_shared<TestDelegate>();
  controller->setDelegate(delegate);
  expectDefaults();
  EXPECT_EQ(delegate->receivedViews, std::vector<const MGLMapView*>(4, controller->mapview()));
  delegate->image = MGLAnnotationImage(filledImage({2, 2}, Qt::red), "two");
  delegate->width = 7.5;
  delegate->color = Qt::green;
  delegate->alpha = 0.25;
  expect("two", 7.5, Qt::green, 0.25);
  delegate.reset();
  EXPECT_FALSE(controller->delegate()) << "the controller does not own it";
  expectDefaults();

  const auto late = std::make_shared<TestDelegate>();
  controller->setDelegate(late);
  delete controller->mapview();
  other.setTintColor(Qt::cyan);
  expect("none", 3, Qt::cyan, 1);
  EXPECT_EQ(controller->mapview(), nullptr);
  loadAndDraw(*controller, twoPoints);
  EXPECT_TRUE(controller->route());
  EXPECT_EQ(controller->responses.size(), 1U);
  EXPECT_TRUE(late->receivedViews.empty()) << "the map view was deleted";
}

TEST_F(QVViewControllerTest, LivesUntilResponsesAreDrawnAfterWindowWasClosed) {
  server_.set(routePath, {200, twoPoints, true});
  auto controller = makeReady<CountingController>();
  const auto delegate = std::make_shared<TestDelegate>();
  controller->setDelegate(delegate);
  auto window = std::make_unique<QWidget>();
  controller->view()->setParent(window.get());
  window->show();
  EXPECT_TRUE(waitUntil([&] { return server_.requests().size() == 3; }));
  window.reset();
  EXPECT_FALSE(controller->isViewLoaded());

  // The second load requests the route again and uses the same map view.
  controller->view()->show();
  EXPECT_EQ(controller->loads, 2);
  EXPECT_EQ(controller->mapview()->parentWidget(), controller->view());
  EXPECT_TRUE(waitUntil([&] { return server_.requests().size() == 4; }));
  controller->view()->close();

  const std::weak_ptr<CountingController> watched = controller;
  const QPointer<MGLMapView> map = controller->mapview();
  controller.reset();
  EXPECT_FALSE(watched.expired());
  server_.release();
  EXPECT_TRUE(waitUntil([&] { return watched.expired(); }));
  EXPECT_EQ(delegate->receivedViews.size(), 2 * 5U) << "both responses were drawn";
  EXPECT_TRUE(map.isNull());
}

// Destroys one object in each of the five calls for two markers and a line, and after a response.
TEST_F(QVViewControllerTest, ObjectsCanBeDestroyedInsideCallsOfDelegateAndController) {
  constexpr int calls = 5;
  server_.set(routePath, {200, twoPoints});
  for (const std::string what : {"map view", "window", "controller", "delegate"}) {
    for (int call = 0; call <= calls; ++call) {
      SCOPED_TRACE(what + " in call " + std::to_string(call));
      auto window = std::make_unique<QWidget>();
      auto controller = makeReady<CountingController>();
      const std::weak_ptr<CountingController> watched = controller;
      auto delegate = std::make_shared<TestDelegate>();
      controller->setDelegate(delegate);
      const QPointer<MGLMapView> map = controller->mapview();
      bool isDone = false;
      controller->received = [&] {
        if (what == "map view") delete map;
        if (what == "window") window.reset();
        if (what == "controller") controller.reset();
        if (what == "delegate") delegate.reset();
        isDone = true;
      };
      delegate->received = [action = controller->received, callsBefore = call]() mutable {
        if (callsBefore-- == 0) action();
      };
      if (call == calls) {
        controller->view()->setParent(window.get());
        EXPECT_TRUE(waitUntil([&] { return isDone; }));
      } else {
        map->setParent(window.get());
        map->addAnnotations({makeMarker({0, 0}, "a"), makeMarker({0, 1}, "b"), makeLine({})});
      }
      EXPECT_TRUE(isDone);
      EXPECT_EQ(watched.expired(), what == "controller");
      // The view controller takes the map view out of the window of its view.
      const bool isMapLeft = what == "delegate" || (what == "window" && call == calls);
      ASSERT_EQ(!map.isNull(), isMapLeft);
      if (isMapLeft) {
        EXPECT_EQ(map->annotations().size(), 3U);
      }
    }
  }
}

// MissingEndTest.cpp tests the same without assertions.
TEST_F(QVViewControllerTest, StopsProcessIfAnEndIsMissing) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  const auto controller = QVViewController::make(), half = QVViewController::make();
  half->setOrigin({1, 2});
  EXPECT_EQ(half->origin(), (Coordinate{1, 2}));
  EXPECT_DEATH((void)controller->origin(), "unexpectedly found nil");
  EXPECT_DEATH((void)half->destination(), "unexpectedly found nil");
#ifndef NDEBUG
  EXPECT_DEATH(controller->view(), "Origin must be set\\.");
  EXPECT_DEATH(half->view(), "Destination must be set\\.");
#endif

  QPalette colorless;
  colorless.setColor(QPalette::Highlight, QColor());
  controller->mapview()->setPalette(colorless);
  EXPECT_DEATH(controller->strokeColorForShapeAnnotation(*controller->mapview(), MGLPolyline({})),
               "unexpectedly found nil");
}

TEST_F(QVViewControllerTest, RouteWidgetShowsTheView) {
  server_.set(routePath, {200, twoPoints});
  QWidget window;
  window.resize(400, 300);
  auto* const widget = new QVRouteWidget(&window);
  widget->resize(400, 300);
  const auto controller = widget->controller();
  controller->setOrigin({1, 2});
  controller->setDestination({3, 4});
  EXPECT_FALSE(controller->isViewLoaded());
  window.show();
  EXPECT_TRUE(waitUntil([&] { return controller->mapview()->annotations().size() == 3; }));
  widget->resize(320, 200);
  EXPECT_EQ(controller->mapview()->frame(), QRect(0, 0, 320, 200));
  EXPECT_TRUE(controller->mapview()->isVisible());
  widget->setFocus();
  EXPECT_EQ(window.focusWidget(), controller->mapview());
  delete widget;
  EXPECT_FALSE(controller->isViewLoaded());
}

TEST_F(QVViewControllerTest, ExampleOfTheDocumentOpensAWindow) {
  server_.set(routePath, {200, twoPoints});
  const auto screen = openRouteWindow({1, 2}, {3, 4}, QUrl());
  EXPECT_TRUE(screen->view()->isVisible());
  EXPECT_TRUE(waitUntil([&] { return screen->route().has_value(); }));
}

// Fails if it is destroyed. Its completion handler, which is neither called nor destroyed, owns it.
struct NeverDestroyedController : QVViewController {
  using QVViewController::QVViewController;
  ~NeverDestroyedController() override { abort(); }
};

[[noreturn]] void end(const std::string& ending) {
  FakeServer server;
  server.set(routePath, {200, twoPoints, true});
  auto application = std::make_unique<TestApplication>();
  auto screen = makeReady<NeverDestroyedController>();
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

TEST(QVViewControllerEndTest, ProcessEndsWithoutOutputWhileRequestRuns) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  for (const char* ending : {"WindowClosed", "Quit", "ExitInAHandler", "MainReturns"})
    EXPECT_EXIT(end(ending), testing::ExitedWithCode(0), testing::Eq("")) << ending;
}

TEST(MainQueueHookTest, BlocksRunInTheEventLoopOfTheCurrentApplication) {
  int late = 0;
  for (int round = 0; round < 2; ++round) {
    const TestApplication application(Screen::none);
    installMainQueueHook();
    bool ran = false;
    std::thread([&] { MainQueue::main().async([&] { ran = true; }); }).join();
    EXPECT_TRUE(waitUntil([&] { return ran; }));
    // The block of the first round runs in the second application.
    EXPECT_EQ(late, round);
    MainQueue::main().async([&] { ++late; });
  }
}

TEST(MainQueueHookTest, DoesNotReplaceTheHookOfAnApplication) {
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
