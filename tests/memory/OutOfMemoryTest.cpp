// SPDX-License-Identifier: Apache-2.0
// Makes each allocation of the library's threads fail once while calls are pending. The servers run
// in another process, so that all threads except the main thread are threads of the library.
#include "tests/faults/Scripts.h"
#include "tests/kit/FakeServer.h"
#include "tests/support/Awaited.h"
#include "tests/support/ThreadStart.h"

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/QVFind.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelPlatform/URLError.h>

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <functional>

extern "C" {
void* __libc_malloc(std::size_t size) noexcept;
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;
void* __libc_realloc(void* block, std::size_t size) noexcept;
}

namespace {

const pthread_t mainThread = pthread_self();
std::atomic<bool> isFailing{false}, failsOnMainThread{false}, failsFromThenOn{false};
std::atomic<int> failingAllocation{0}, allocations{0};

bool failsNow() noexcept {
  const bool isMainThread = pthread_equal(pthread_self(), mainThread) != 0;
  if (!isFailing || isMainThread != failsOnMainThread) return false;
  const int number = ++allocations;
  const bool fails = failsFromThenOn ? number >= failingAllocation : number == failingAllocation;
  if (fails) errno = ENOMEM;
  return fails;
}

}  // namespace

// Replace the functions of the C library, also for other libraries.
extern "C" {
void* malloc(std::size_t size) noexcept { return failsNow() ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) noexcept {
  return failsNow() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) noexcept {
  return failsNow() ? nullptr : __libc_realloc(block, size);
}
}

namespace quorvelkit {
namespace {

using namespace test;

const std::string routeBody =
    R"({"points":[{"lat":1.5,"turn":{"st":{"name":"Fleet Street","hwy":{}}}},0],"distance":"\u00e9"})";

// Returns the port of a server in a child process, which ends with this process.
int startServerProcess() {
  int ends[2] = {-1, -1};
  if (pipe(ends) != 0) return 0;
  if (fork() == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // Parts of a target, and the answers. The first part that fits is used.
    const std::pair<std::string, std::string> answers[] = {
        {"/moved/",
         withLength(header(302, "Location: /plain/v4/route\r\nSet-Cookie: a=b\r\n"), "")},
        {"/gzip/", withLength(okGzip, helloGzip)},
        {"/chunks/", okChunked + "\r\n" + chunked(routeBody, 9)},
        {"/failed/", withLength(header(500), "out of order")},
        {"/once/", withLength(header(200, "Connection: close\r\n"), routeBody)},
        {loginPath, withLength(ok, R"({"user-token":")" + token36 + "\"}")},
        {"configuration.json", withLength(ok, roots("http://a.test", "http://b.test"))},
        {"findAddress", withLength(ok, R"({"candidates":[{"score":1},2]})")},
        {"", withLength(ok, routeBody)},
    };
    const TestServer server([&](const ReceivedRequest& received, Connection& to) {
      to.send(std::ranges::find_if(answers, [&](const auto& each) {
                return received.target.find(each.first) != std::string::npos;
              })->second);
    });
    const int port = server.port();
    if (write(ends[1], &port, sizeof port) == sizeof port) pause();
    _exit(0);
  }
  int port = 0;
  return read(ends[0], &port, sizeof port) == sizeof port ? port : 0;
}

using Handler = std::function<void(std::shared_ptr<QVBaseResponse>)>;

// A call, and the condition for its response if that has no error of the transport.
struct Row {
  const char* path;
  std::function<void(Handler)> start;
  std::function<bool(const QVBaseResponse&)> isGood;
};

void routeTo(Handler handler) {
  QVNavigation::route(std::make_shared<QVRouteRequest>(Coordinate{1, 2}, Coordinate{3, 4}),
                      std::move(handler));
}
std::size_t pointsOf(const QVBaseResponse& response) {
  const auto* const ofRoute = dynamic_cast<const QVRouteResponse*>(&response);
  return ofRoute && ofRoute->route() ? ofRoute->route()->points().size() : 0;
}
bool isRoute(const QVBaseResponse& response) {
  return !response.error() && pointsOf(response) == 2;
}

const Row rows[] = {
    {"plain", routeTo, isRoute},
    {"once", routeTo, isRoute},
    {"moved", routeTo, isRoute},
    {"chunks", routeTo, isRoute},
    {"gzip", routeTo, [](const auto& r) { return !r.error() && r.data()->size() == 17; }},
    {"failed", routeTo, [](const auto& r) { return r.error() && r.error()->code() == 500; }},
    {"plain",
     [](Handler handler) {
       QVFind::addressCandidates(std::make_shared<QVAddressCandidatesRequest>("a", Coordinate{}),
                                 std::move(handler));
     },
     [](const auto& r) {
       return dynamic_cast<const QVAddressCandidatesResponse&>(r).candidates().size() == 2;
     }},
    {"first call",
     [](Handler handler) {
       QVBackendless::setUserToken("");
       QVConfiguration::setCachedResponse(nullptr);
       QVConfiguration::get(std::move(handler));
     },
     [](const auto& r) { return !r.error() && !r.data()->empty(); }},
};

// Returns the number of allocations.
int callWithFailures(const Row& row, int failing, bool fromThenOn) {
  SCOPED_TRACE(std::string(row.path) + ", allocation " + std::to_string(failing) +
               (fromThenOn ? " and all later ones" : ""));
  failingAllocation = failing;
  failsFromThenOn = fromThenOn;
  allocations = 0;
  int runs = 0;
  std::shared_ptr<QVBaseResponse> response;
  isFailing = true;
  row.start([&](std::shared_ptr<QVBaseResponse> delivered) {
    ++runs;
    response = std::move(delivered);
  });
  EXPECT_TRUE(runMainQueueUntil([&] { return runs > 0; }));
  isFailing = false;
  MainQueue::main().runPending();
  EXPECT_EQ(runs, 1);
  if (!response) return 0;
  const auto& error = response->error();
  if (error && error->domain() == URLError::domain) {
    EXPECT_FALSE(response->data() || response->response() || response->json());
    EXPECT_EQ(pointsOf(*response), 0U);
    EXPECT_GE(allocations, failing) << *error;
  } else {
    EXPECT_TRUE(row.isGood(*response)) << (error ? error->localizedDescription() : "");
  }
  return allocations;
}

TEST(OutOfMemoryTest, CallEndsOnceIfAnyAllocationFails) {
  const std::string root = "http://127.0.0.1:" + std::to_string(startServerProcess());
  QVBackendless::setBaseURL(root);
  for (const Row& row : rows) {
    for (const bool fromThenOn : {false, true}) {
      configure(roots(root + '/' + row.path, root + '/' + row.path));
      EXPECT_LT(callWithFailures(row, INT_MAX, fromThenOn), 5000);
      for (int failing = 1; callWithFailures(row, failing, fromThenOn) >= failing; ++failing)
        if (HasFailure()) return;
    }
  }
}

// Runs a function on the main thread, each time with another failing allocation, then another one.
void failEachAllocation(const std::function<void()>& run, const std::function<void()>& check) {
  failsOnMainThread = true;
  int failing = 0;
  do {
    SCOPED_TRACE("allocation " + std::to_string(++failing));
    failingAllocation = failing;
    allocations = 0;
    isFailing = true;
    try {
      run();
    } catch (const std::bad_alloc&) {
    }
    isFailing = false;
    check();
  } while (allocations >= failing && !testing::Test::HasFailure());
  EXPECT_GT(failing, 2);
}

TEST(OutOfMemoryTest, CallOfAProcessWithoutThreadsEndsOnceOrThrows) {
  threadsLeft = 0;
  QVBackendless::setBaseURL("http://127.0.0.1:1");
  const auto login = [](const std::shared_ptr<int>& runs) {
    QVBackendless::login([runs](const auto&) { ++*runs; });
  };
  std::shared_ptr<int> runs;
  bool hasReturned = false;
  failEachAllocation(
      [&] {
        runs = nullptr;
        hasReturned = false;
        runs = std::make_shared<int>(0);
        login(runs);
        hasReturned = true;
      },
      [&] {
        // The first block completes the task, the second one runs the completion handler.
        MainQueue::main().runPending();
        MainQueue::main().runPending();
        EXPECT_EQ(runs ? *runs : 0, hasReturned ? 1 : 0);
        EXPECT_LE(runs.use_count(), 1);
      });
  // With threads again, no earlier task completes a second time.
  threadsLeft = INT_MAX;
  runs = std::make_shared<int>(0);
  login(runs);
  EXPECT_TRUE(runMainQueueUntil([&] { return *runs > 0; }));
}

TEST(OutOfMemoryTest, CancelledCallEndsAlsoIfCancelThrows) {
  FakeServer server;
  configure(roots("http://nav.test", "http://find.test"));
  server.set("/v4/route", {200, routeBody});
  server.hold("/v4/route");
  const auto start = [&] {
    const std::size_t before = server.requests().size();
    QVCall call(QVNavigation::route,
                std::make_shared<QVRouteRequest>(Coordinate{1, 2}, Coordinate{3, 4}));
    EXPECT_EQ(server.requests(before + 1).size(), before + 1);
    return call;
  };
  auto call = start();
  failEachAllocation(
      [&] {
        call.cancel();
        MainQueue::main().runPending();
      },
      [&] {
        server.release();
        EXPECT_TRUE(call.waitFor(std::chrono::seconds(20)));
        call = start();
      });
}

TEST(OutOfMemoryTest, SchedulerWorksAfterAFailure) {
  Scheduler& scheduler = Scheduler::shared();
  std::unique_ptr<Scheduler::Timer> timer;
  failEachAllocation(
      [&] { timer = scheduler.schedule(scheduler.now() + std::chrono::hours(1), [] {}); },
      [&] {
        const Awaited<bool> ran;
        timer = scheduler.schedule(scheduler.now(), [ran] { ran.set(true); });
        EXPECT_TRUE(ran.get());
      });
}

}  // namespace
}  // namespace quorvelkit
