// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVBaseResponse.h>

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <optional>
#include <string>

/// Where the program asks, and what it tells about asking: the part that all sub-commands share.
class Backend {
 public:
  /// Adds the options that all sub-commands have.
  void addOptions(CLI::App& command);

  /// Loads the configuration that every other call needs. Returns what went wrong, as a sentence
  /// with what to do about it.
  std::optional<std::string> load(std::ostream& trace) const;

  /// Tells about an exchange, when that is wanted: method, address, status and size.
  void traceExchange(std::ostream& trace, const quorvelkit::QVBaseResponse& response) const;

  /// What went wrong with a call, as a sentence; absent when nothing did.
  static std::optional<std::string> problem(const quorvelkit::QVBaseResponse& response);

 private:
  std::string url_ = quorvelkit::QVBackendless::baseURL();
  bool traces_ = false;
};
