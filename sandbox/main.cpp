// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Sandbox.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelPlatform/DoubleText.h>
#include <QuorvelPlatform/MainQueueThread.h>

#include <CLI/CLI.hpp>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <mutex>
#include <optional>
#include <string>

using namespace quorvelkit;
using namespace quorvelkit::sandbox;

namespace {

// In the built-in town, from west to east over the freeway.
constexpr std::optional<Trip> townTrip = Trip{{40.4523, -38.2804}, {40.4469, -38.1872}};

std::string text(const Coordinate& coordinate) {
  return defaultText(coordinate.latitude) + ',' + defaultText(coordinate.longitude);
}

// Blocks SIGINT and SIGTERM in this thread and in the threads that it starts later, for sigwait.
sigset_t blockStopSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

// Called on the server's threads.
void logToStandardError(const std::string& line) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  std::cerr << line << std::endl;
}

// Opens a URL in the browser of the desktop.
void openInBrowser(const std::string& url) {
  std::string program = "xdg-open", argument = url;
  char* const arguments[] = {program.data(), argument.data(), nullptr};
  // The browser must not inherit the blocked signals.
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  posix_spawnattr_setsigmask(&attributes, &none);
  pid_t child = 0;
  if (posix_spawnp(&child, program.c_str(), nullptr, &attributes, arguments, environ) != 0)
    std::cerr << "quorvel-sandbox: xdg-open, which opens the page, is not installed\n";
  posix_spawnattr_destroy(&attributes);
}

int run(int argc, char** argv) {
  CLI::App app("A local backend: login, configuration and routes on the streets of one map.");
  app.set_version_flag("--version", "quorvel-sandbox " QUORVELKIT_VERSION);
  int port = 8080;
  std::string mapFile;
  bool logs = false, opens = false;
  app.add_option("--port", port, "Port on 127.0.0.1 to listen on, 0 for any free one")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  app.add_option("--map", mapFile,
                 "GeoJSON file with OSM tags (output of osmium export) to use instead of the "
                 "built-in town");
  app.add_flag("--log", logs, "Write one line for each request to standard error");
  app.add_flag("--open", opens, "Open the page of the sandbox in the browser, with xdg-open");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }

  const sigset_t signals = blockStopSignals();
  std::string problem;
  const auto map = mapFile.empty() ? MapData::builtInTown() : MapData::fromFile(mapFile, problem);
  if (!map) {
    std::cerr << "quorvel-sandbox: cannot use " << mapFile << ": " << problem << '\n';
    return 1;
  }
  Sandbox sandbox(map, logs ? logToStandardError : HTTPServer::Log());
  if (sandbox.routes().network().edgeCount() == 0) {
    std::cerr << "quorvel-sandbox: " << mapFile << " holds no roads (lines with a highway tag)\n";
    return 1;
  }
  // The page makes its calls through the library.
  const MainQueueThread mainQueue;
  if (!sandbox.start(port)) {
    std::cerr << "quorvel-sandbox: port " << port
              << " is in use; choose another one with --port, or --port 0 for any free port\n";
    return 1;
  }
  QVBackendless::setBaseURL(sandbox.url());
  // Programs parse the first two lines.
  std::cout << "listening on " << sandbox.url() << std::endl;
  if (const auto trip = mapFile.empty() ? townTrip : sandbox.routes().sampleTrip()) {
    std::cout << "try: quorvel route --backend " << sandbox.url() << " --from " << text(trip->from)
              << " --to " << text(trip->to) << std::endl;
  } else {
    std::cout << "this map has no connected streets" << std::endl;
  }
  std::cout << "map and search in a browser: " << sandbox.url() << '/' << std::endl;
  if (opens) openInBrowser(sandbox.url() + '/');
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
