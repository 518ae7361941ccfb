// SPDX-License-Identifier: Apache-2.0
#include "Backend.h"
#include "BatchCommand.h"
#include "Failure.h"
#include "FindCommand.h"
#include "RouteCommand.h"
#include "ServerText.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>

namespace {

/// Returns a message that names an option or a command that does not exist, or else what CLI11
/// says.
std::string usageMessage(const CLI::App& program, const CLI::ParseError& error) {
  const auto unknown = program.remaining(true);
  if (unknown.empty()) return error.what();
  const auto option = std::find_if(unknown.begin(), unknown.end(), [](const std::string& word) {
    return word.size() > 1 && word.front() == '-';
  });
  if (option != unknown.end())
    return "There is no option " + option->substr(0, option->find('=')) + '.';
  if (program.get_subcommands().empty()) return "There is no command '" + unknown.front() + "'.";
  return "The argument '" + unknown.front() +
         "' is not expected. Quote a text that contains spaces.";
}

int reportUsageError(const CLI::App& program, const CLI::ParseError& error) {
  const auto chosen = program.get_subcommands();
  fail(printable(usageMessage(program, error)) + "\nRun quorvel " +
       (chosen.empty() ? "" : chosen.front()->get_name() + ' ') + "--help for what there is.");
  return usageError;
}

int run(int argc, char** argv) {
  CLI::App program("Routes and place search on the command line, by QuorvelKit.");
  program.set_version_flag("--version", "quorvel " QUORVELKIT_VERSION);
  program.require_subcommand(1);
  Backend backend;
  const RouteCommand route(program, backend);
  const FindCommand find(program, backend);
  const BatchCommand batch(program, backend);
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& helpOrVersion) {
    return program.exit(helpOrVersion);
  } catch (const CLI::ParseError& error) {
    return reportUsageError(program, error);
  }
  if (batch.isChosen()) return batch.run();
  return route.isChosen() ? route.run() : find.run();
}

/// Returns the exit code after the output was written completely. Nothing reads from a closed pipe,
/// so that is no message.
int checkOutput(int exitCode) {
  std::cout.flush();
  const bool isWritten = std::cout.good() && std::fflush(stdout) == 0;
  if (isWritten) return exitCode;
  if (errno == EPIPE) return 1;
  return fail("The output cannot be written: " + std::generic_category().message(errno) + '.');
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return checkOutput(run(argc, argv));
  } catch (const std::system_error& error) {
    if (error.code().value() == EPIPE) return 1;
    (void)std::fprintf(stderr, "quorvel: %s.\n", error.what());
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "quorvel: %s\n", error.what());
  }
  return 1;
}
