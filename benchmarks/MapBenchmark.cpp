// SPDX-License-Identifier: Apache-2.0
// What a long route costs the GUI thread until it is added to the map, as processor time of that
// thread: in the map view alone, and in the whole handler of the screen, from the response to the
// annotations. Drawing it is the engine's work that follows.
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

// Wakes who waits for a block on the main queue, which is run where its time is taken.
struct Bell {
  std::mutex mutex;
  std::condition_variable changed;
  bool hasRung = false;

  void ring() {
    {
      const std::lock_guard lock(mutex);
      hasRung = true;
    }
    changed.notify_all();
  }
  bool wait() {
    std::unique_lock lock(mutex);
    const bool rang = changed.wait_for(lock, std::chrono::minutes(1), [this] { return hasRung; });
    hasRung = false;
    return rang;
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

// A short line is seen: the engine has its style and draws.
bool isAtWork(MGLMapView& map) {
  map.setTintColor(Qt::blue);
  map.addAnnotations({std::make_shared<MGLPolyline>(std::vector<Coordinate>{{0, -50}, {0, 50}})});
  const auto isBlue = [&] {
    const QColor seen = map.grab().toImage().pixelColor(map.rect().center());
    return seen.blue() > 2 * seen.red();
  };
  return runUntil(isBlue) && map.engineNote().contains(QStringLiteral("mapboxgl."));
}

template <class Work>
double processorSecondsOf(Work work) {
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
    if (!isAtWork(map)) return state.SkipWithError("the engine does not draw");
    const MGLMapView::Annotations annotations = {marker("origin", line.front()),
                                                 marker("destination", line.back()),
                                                 std::make_shared<MGLPolyline>(line)};
    state.SetIterationTime(processorSecondsOf([&] { map.addAnnotations(annotations); }));
    QCoreApplication::processEvents();
  }
}

void handleInScreen(benchmark::State& state) {
  static test::FakeServer server;
  static Bell bell;
  MainQueue::main().setWakeUpHook([] { bell.ring(); });
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
    if (!isAsked || !isAtWork(map)) return state.SkipWithError("the engine does not draw");
    bell.hasRung = false;
    server.release();
    if (!bell.wait()) return state.SkipWithError("no answer came");
    state.SetIterationTime(processorSecondsOf([] { MainQueue::main().runPending(); }));
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
