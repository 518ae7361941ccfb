// SPDX-License-Identifier: Apache-2.0
#include "Backend.h"
#include "RouteCommand.h"

#include <CLI/CLI.hpp>

namespace {

constexpr int usageError = 2;

}  // namespace

int main(int argc, char** argv) {
  CLI::App program("Routes on the command line, by QuorvelKit.");
  program.require_subcommand(1);
  Backend backend;
  const RouteCommand route(program, backend);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : usageError;
  }
  return route.run();
}
