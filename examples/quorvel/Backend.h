// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVBaseResponse.h>

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <optional>
#include <string>

/// The backend that the command line names, with the options and steps of all sub-commands.
class Backend {
 public:
  /// Adds --backend and --trace.
  void addOptions(CLI::App& command);

  /// Loads the configuration, which every other call needs. Returns an error message that says what
  /// to do, or nullopt.
  std::optional<std::string> load(std::ostream& trace) const;

  /// Writes method, URL, status and body size of an exchange if --trace is set.
  void traceExchange(std::ostream& trace, const quorvelkit::QVBaseResponse& response) const;

  /// Returns the error of a call as a sentence, or nullopt if it has none.
  static std::optional<std::string> errorText(const quorvelkit::QVBaseResponse& response);

 private:
  std::string url_ = quorvelkit::QVBackendless::baseURL();
  bool traces_ = false;
};
