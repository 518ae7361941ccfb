// SPDX-License-Identifier: Apache-2.0
#include "Backend.h"
#include "FindCommand.h"
#include "RouteCommand.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>

namespace {

constexpr int usageError = 2;

int run(int argc, char** argv) {
  CLI::App program("Routes and place search on the command line, by QuorvelKit.");
  program.set_version_flag("--version", "quorvel " QUORVELKIT_VERSION);
  program.require_subcommand(1);
  Backend backend;
  const RouteCommand route(program, backend);
  const FindCommand find(program, backend);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : usageError;
  }
  return route.isChosen() ? route.run() : find.run();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "quorvel: %s\n", error.what());
    return 1;
  }
}
