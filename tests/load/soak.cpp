// SPDX-License-Identifier: Apache-2.0
// Loads the library for minutes instead of milliseconds, beside a server in the same process.
//   soak calls COUNT     keeps 64 calls in flight; memory and descriptors must stay flat
//   soak cancels COUNT   cancels at random phases; each handler must run exactly once
//   soak exits COUNT     lets programs end, and fork, with requests in TLS
#include "tests/kit/FakeServer.h"
#include "tests/support/Certificates.h"
#include "tests/support/TestServer.h"

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVNavigation.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

using namespace quorvelkit;
using namespace quorvelkit::test;

namespace {

// What the process holds: its memory in kB, and its open descriptors.
struct Holding {
  long memory = 0;
  long descriptors = 0;

  static Holding now() {
    long all = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return {resident * (sysconf(_SC_PAGESIZE) / 1024), std::distance(begin(open), end(open))};
  }
};

void pointAt(const TestServer& server) {
  const JSON roots(ValueMap{{"quorvel-navigation-root-url", server.url("")}});
  QVConfiguration::setCachedResponse(makeResponse<QVConfigurationResponse>(
      roots.rawData(), std::make_shared<QVConfigurationRequest>()));
}

auto requestAt(double latitude) {
  return std::make_shared<QVRouteRequest>(Coordinate{latitude, 0}, Coordinate{0, 0});
}

bool calls(long count) {
  const std::string body = R"({"points":[{"lat":1.5,"lon":2.5,"t":3}],"distance":1.25})";
  const TestServer server(TestServer::answering(
      [&](const auto&, Connection& connection) { connection.answer(200, body); }));
  pointAt(server);
  constexpr long inFlight = 64;
  long started = 0, ended = 0, good = 0;
  std::function<void()> start = [&] {
    ++started;
    QVNavigation::route(requestAt(0), [&](const std::shared_ptr<QVRouteResponse>& response) {
      ++ended;
      good += response->route() && response->route()->points().size() == 1 ? 1 : 0;
      if (started < count) start();
    });
  };
  const auto runUntil = [&](long end) { return runMainQueueUntil([&] { return ended >= end; }); };
  const auto began = std::chrono::steady_clock::now();
  while (started < std::min(count, inFlight))
    start();
  if (!runUntil(count / 5)) return false;
  const Holding early = Holding::now();
  if (!runUntil(count - inFlight)) return false;
  const Holding late = Holding::now();
  if (!runUntil(count)) return false;
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - began;
  std::printf(
      "%ld calls, %ld good, %.0f a second; memory %ld kB after a fifth, %ld kB at the end; "
      "descriptors %ld, %ld\n",
      ended, good, static_cast<double>(count) / time.count(), early.memory, late.memory,
      early.descriptors, late.descriptors);
  constexpr long tolerated = 2048;
  return good == count && late.memory - early.memory < tolerated &&
         late.descriptors == early.descriptors;
}

// Latitudes stand for what the server does: answers, stands still, resets, or stands still in the
// body.
void serve(const ReceivedRequest& received, Connection& connection) {
  if (received.target.find("startLat=0.0") != std::string::npos) {
    connection.answer(200, "{}");
  } else if (received.target.find("startLat=1.0") != std::string::npos) {
    connection.stall();
  } else if (received.target.find("startLat=2.0") != std::string::npos) {
    connection.reset();
  } else {
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n{");
    connection.stall();
  }
}

bool cancels(long count) {
  std::minstd_rand random(7);
  long cancelled = 0, answered = 0, lost = 0, wrong = 0;
  for (long done = 0; done < count;) {
    const TestServer server(TestServer::answering(serve));
    pointAt(server);
    const long round = std::min(count - done, 1000L);
    std::vector<int> runs(static_cast<std::size_t>(round));
    std::vector<std::shared_ptr<URLSessionDataTask>> tasks;
    long ended = 0;
    for (int& run : runs) {
      tasks.push_back(QVNavigation::route(
          requestAt(static_cast<double>(random() % 4)), [&](const auto& response) {
            ++run;
            ++ended;
            ++(response->isCancelled() ? cancelled : response->error() ? lost : answered);
          }));
      // Some get on their way before the next one comes.
      if (random() % 4 == 0) MainQueue::main().runOnce(std::chrono::milliseconds(1));
      const std::size_t back = random() % std::min<std::size_t>(tasks.size(), 32);
      tasks[tasks.size() - 1 - back]->cancel();
    }
    for (const auto& task : tasks)
      task->cancel();
    if (!runMainQueueUntil([&] { return ended >= round; })) return false;
    MainQueue::main().runPending();
    for (const int run : runs)
      wrong += run == 1 ? 0 : 1;
    done += round;
  }
  std::printf(
      "%ld calls: %ld cancelled, %ld answered before, %ld lost before; %ld handlers did "
      "not run exactly once\n",
      count, cancelled, answered, lost, wrong);
  return wrong == 0;
}

bool exits(long count, const std::string& program) {
  const Certificates certificates;
  const TestServer server(
      TestServer::answering([](const ReceivedRequest& received, Connection& connection) {
        received.target == "/stall" ? connection.stall() : connection.answer(200, "quick");
      }),
      certificates.tls("good"));
  long bad = 0;
  for (const char* way :
       {"main", "handler", "protocol", "late", "idle", "name", "fork", "fork-name"}) {
    for (long round = 0; round < count; ++round) {
      const std::string command =
          "exec '" + program + "' " + way + ' ' + server.url() + ' ' + certificates.caFile();
      const int status = std::system(command.c_str());
      if (WIFEXITED(status) && WEXITSTATUS(status) == 0) continue;
      std::printf("%s: status %d\n", way, status);
      ++bad;
    }
  }
  std::printf("%ld programs ended with requests in TLS in each of 8 ways, %ld badly\n", count, bad);
  return bad == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc == 3 ? argv[1] : "";
  const long count = argc == 3 ? std::atol(argv[2]) : 0;
  if (count > 0 && what == "calls") return calls(count) ? 0 : 1;
  if (count > 0 && what == "cancels") return cancels(count) ? 0 : 1;
  if (count > 0 && what == "exits") return exits(count, QUORVELKIT_EXIT_PROGRAM) ? 0 : 1;
  std::fputs("usage: soak calls|cancels|exits COUNT\n", stderr);
  return 2;
}
