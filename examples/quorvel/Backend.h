// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/QVBackendless.h>

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <optional>
#include <string>

/// The backend that the command line names, with the options and steps of all sub-commands.
class Backend {
 public:
  /// Adds --backend and --trace.
  void addOptions(CLI::App& command);

  /// Logs in and loads the configuration, which every other call needs. Returns an error message
  /// that says what to do, or nullopt.
  std::optional<std::string> load(std::ostream& trace,
                                  const quorvelkit::QVCallOptions& options = {}) const;

  /// Sends a request and waits for the result.
  template <class Request, class Facade>
  auto call(std::ostream& trace, Facade facade, std::shared_ptr<Request> request,
            quorvelkit::QVCallOptions options = {}) const {
    auto result = quorvelkit::QVCall(facade, std::move(request), std::move(options)).wait();
    if (result.response()) traceExchange(trace, *result.response());
    return result;
  }

  bool traces() const { return traces_; }
  /// Writes method, URL, status and body size of an exchange if --trace is set.
  void traceExchange(std::ostream& trace, const quorvelkit::QVBaseResponse& response) const;

 private:
  std::string url_ = quorvelkit::QVBackendless::baseURL();
  bool traces_ = false;
};
