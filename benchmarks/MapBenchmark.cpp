// SPDX-License-Identifier: Apache-2.0
// Measures the processor time of the GUI thread to add a long route to the map: in the map view
// only, and in the completion handler of the view controller. Does not include the drawing by the
// engine.
#include "Documents.h"
#include "tests/kit/FakeServer.h"

#include <QuorvelKit/QVViewController.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <ctime>

namespace quorvelkit::bench {
namespace {

constexpr std::size_t points = 100000;
constexpr const char* routePath = "/v4/route";

// Waits for a block on the main queue without running it, because the benchmark measures the run.
struct WakeUp {
  std::mutex mutex;
  std::condition_variable changed;
  bool isSet = false;

  void set() {
    {
      const std::lock_guard lock(mutex);
      isSet = true;
    }
    changed.notify_all();
  }
  bool wait() {
    std::unique_lock lock(mutex);
    const bool wasSet = changed.wait_for(lock, std::chrono::minutes(1), [this] { return isSet; });
    isSet = false;
    return wasSet;
  }
};

template <class Condition>
bool runUntil(Condition condition) {
  QElapsedTimer clock;
  clock.start();
  while (!condition()) {
    if (clock.hasExpired(60000)) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    MainQueue::main().runPending();
  }
  return true;
}

// Adds a short line and waits until it is visible. After that, the engine has loaded its style.
bool engineDraws(MGLMapView& map) {
  map.setTintColor(Qt::blue);
  map.addAnnotations({std::make_shared<MGLPolyline>(std::vector<Coordinate>{{0, -50}, {0, 50}})});
  const auto isBlue = [&] {
    const QColor seen = map.grab().toImage().pixelColor(map.rect().center());
    return seen.blue() > 2 * seen.red();
  };
  return runUntil(isBlue) && map.engineNote().contains(QStringLiteral("mapboxgl."));
}

template <class Work>
double processorSeconds(Work work) {
  const auto now = [] {
    std::timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

std::shared_ptr<MGLPointAnnotation> marker(const char* title, Coordinate coordinate) {
  auto made = std::make_shared<MGLPointAnnotation>();
  made->setTitle(title);
  made->setCoordinate(coordinate);
  return made;
}

void addToView(benchmark::State& state) {
  const QVRoute route(JSON::parse(routeDocument(points)));
  std::vector<Coordinate> line;
  for (const QVPoint& point : route.points())
    line.push_back(point.location());
  for ([[maybe_unused]] auto _ : state) {
    MGLMapView map(QRect(0, 0, 900, 640));
    map.show();
    if (!engineDraws(map)) return state.SkipWithError("the engine does not draw");
    const MGLMapView::Annotations annotations = {marker("origin", line.front()),
                                                 marker("destination", line.back()),
                                                 std::make_shared<MGLPolyline>(line)};
    state.SetIterationTime(processorSeconds([&] { map.addAnnotations(annotations); }));
    QCoreApplication::processEvents();
  }
}

void handleInScreen(benchmark::State& state) {
  static test::FakeServer server;
  static WakeUp wakeUp;
  MainQueue::main().setWakeUpHook([] { wakeUp.set(); });
  for ([[maybe_unused]] auto _ : state) {
    server.set(routePath, {200, routeDocument(points), true});
    const std::size_t before = server.requests().size();
    const auto screen = QVViewController::make();
    screen->setOrigin({1, 2});
    screen->setDestination({3, 4});
    screen->view()->show();
    MGLMapView& map = *screen->mapview();
    const bool isAsked = runUntil([&] {
      const auto requests = server.requests();
      return requests.size() > before && requests.back().url().path() == routePath;
    });
    if (!isAsked || !engineDraws(map)) return state.SkipWithError("the engine does not draw");
    wakeUp.isSet = false;
    server.release();
    if (!wakeUp.wait()) return state.SkipWithError("no response arrived");
    state.SetIterationTime(processorSeconds([] { MainQueue::main().runPending(); }));
    if (map.annotations().size() != 4 || screen->route()->points().size() != points) {
      return state.SkipWithError("the route was not added");
    }
    QCoreApplication::processEvents();
  }
}

BENCHMARK(addToView)->Name("map/view/100000")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(handleInScreen)
    ->Name("map/screen/100000")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quorvelkit::bench

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
