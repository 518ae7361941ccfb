// SPDX-License-Identifier: Apache-2.0
#include "Backend.h"
#include "CandidatesCommand.h"
#include "ReverseCommand.h"
#include "RouteCommand.h"
#include "SuggestCommand.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>

namespace {

constexpr int usageError = 2;

int run(int argc, char** argv) {
  CLI::App program("Routes and place search on the command line, by QuorvelKit.");
  program.require_subcommand(1);
  Backend backend;
  const RouteCommand route(program, backend);
  const CandidatesCommand candidates(program, backend);
  const SuggestCommand suggest(program, backend);
  const ReverseCommand reverse(program, backend);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : usageError;
  }
  if (candidates.chosen()) return candidates.run();
  if (suggest.chosen()) return suggest.run();
  if (reverse.chosen()) return reverse.run();
  return route.run();
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
