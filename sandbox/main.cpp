// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Sandbox.h"

#include <QuorvelPlatform/DoubleText.h>

#include <CLI/CLI.hpp>
#include <signal.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <mutex>
#include <optional>
#include <string>

using namespace quorvelkit;
using namespace quorvelkit::sandbox;

namespace {

// From the hills in the west of the built-in town over its freeway to the harbor in the east.
constexpr std::optional<Trip> townTrip = Trip{{40.4523, -38.2804}, {40.4469, -38.1872}};

std::string text(const Coordinate& coordinate) {
  return defaultText(coordinate.latitude) + ',' + defaultText(coordinate.longitude);
}

int run(int argc, char** argv) {
  CLI::App app("A local backend: login, configuration and routes on the streets of one map.");
  int port = 8080;
  std::string mapFile;
  bool logs = false;
  app.add_option("--port", port, "Port on 127.0.0.1 to listen on, 0 for any free one")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  app.add_option("--map", mapFile,
                 "GeoJSON file with OSM tags, as osmium export writes it, instead of the built-in "
                 "town");
  app.add_flag("--log", logs, "Write a line about each request to standard error");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }

  // Blocked here, before there are other threads, so that all of them leave these to sigwait.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);

  std::string problem;
  const auto map = mapFile.empty() ? MapData::builtInTown() : MapData::fromFile(mapFile, problem);
  if (!map) {
    std::cerr << "quorvel-sandbox: cannot use " << mapFile << ": " << problem << '\n';
    return 1;
  }
  HTTPServer::Log log;
  std::mutex logMutex;
  if (logs) {
    log = [&](const std::string& line) {
      const std::lock_guard lock(logMutex);
      std::cerr << line << std::endl;
    };
  }
  Sandbox sandbox(map, std::move(log));
  if (sandbox.routes().network().edgeCount() == 0) {
    std::cerr << "quorvel-sandbox: " << mapFile << " holds no roads (lines with a highway tag)\n";
    return 1;
  }
  if (!sandbox.start(port)) {
    std::cerr << "quorvel-sandbox: port " << port
              << " is taken; choose another with --port, or --port 0 for any free one\n";
    return 1;
  }
  // Programs read these two lines to learn the address and a trip.
  std::cout << "listening on " << sandbox.url() << std::endl;
  if (const auto trip = mapFile.empty() ? townTrip : sandbox.routes().sampleTrip()) {
    std::cout << "try: quorvel route --backend " << sandbox.url() << " --from " << text(trip->from)
              << " --to " << text(trip->to) << std::endl;
  } else {
    std::cout << "no two streets of this map are joined" << std::endl;
  }
  int received = 0;
  sigwait(&signals, &received);
  sandbox.stop();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "quorvel-sandbox: %s\n", error.what());
    return 1;
  }
}
