// SPDX-License-Identifier: Apache-2.0
// Runs COUNT calls, 64 at a time, against a server in the same process. Fails if memory or the
// number of open descriptors grows.
//   soak COUNT
#include "tests/kit/FakeServer.h"
#include "tests/support/TestServer.h"

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVNavigation.h>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

using namespace quorvelkit;
using namespace quorvelkit::test;

namespace {

// The memory of the process in kB, and its number of open descriptors.
struct Usage {
  long memory = 0;
  long descriptors = 0;

  static Usage now() {
    long all = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return {resident * (sysconf(_SC_PAGESIZE) / 1024), std::distance(begin(open), end(open))};
  }
};

bool runCalls(long count) {
  const std::string body = R"({"points":[{"lat":1.5,"lon":2.5,"t":3}],"distance":1.25})";
  const TestServer server(
      [&](const auto&, Connection& connection) { connection.answer(200, body); });
  configure(roots(server.url(""), ""));
  constexpr long inFlight = 64;
  long started = 0, completed = 0, good = 0;
  std::function<void()> start = [&] {
    ++started;
    const auto request = std::make_shared<QVRouteRequest>(Coordinate{}, Coordinate{});
    QVNavigation::route(request, [&](const std::shared_ptr<QVRouteResponse>& response) {
      ++completed;
      good += response->route() && response->route()->points().size() == 1 ? 1 : 0;
      if (started < count) start();
    });
  };
  const auto runUntil = [&](long end) {
    return runMainQueueUntil([&] { return completed >= end; });
  };
  const auto begin = std::chrono::steady_clock::now();
  while (started < std::min(count, inFlight))
    start();
  if (!runUntil(count / 5)) return false;
  const Usage early = Usage::now();
  if (!runUntil(count - inFlight)) return false;
  const Usage late = Usage::now();
  if (!runUntil(count)) return false;
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  std::printf(
      "%ld calls, %ld good, %.0f a second; memory %ld kB after a fifth, %ld kB at the end; "
      "descriptors %ld, %ld\n",
      completed, good, static_cast<double>(count) / time.count(), early.memory, late.memory,
      early.descriptors, late.descriptors);
  constexpr long tolerated = 2048;
  return good == count && late.memory - early.memory < tolerated &&
         late.descriptors == early.descriptors;
}

}  // namespace

int main(int argc, char** argv) {
  const long count = argc == 2 ? std::atol(argv[1]) : 0;
  if (count > 0) return runCalls(count) ? 0 : 1;
  std::fputs("usage: soak COUNT\n", stderr);
  return 2;
}
