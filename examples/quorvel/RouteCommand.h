// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Backend.h"

#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVRouteResponse.h>

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

/// `quorvel route`: asks for a route and prints its directions.
class RouteCommand {
 public:
  RouteCommand(CLI::App& program, Backend& backend);

  bool chosen() const { return command_->parsed(); }
  /// Returns the exit code: 0, or 1 after telling why on standard error.
  int run() const;

 private:
  std::shared_ptr<quorvelkit::QVRouteRequest> makeRequest() const;
  void print(const quorvelkit::QVRouteRequest& request,
             const quorvelkit::QVRouteResponse& response) const;

  CLI::App* command_;
  Backend& backend_;
  std::string from_;
  std::string to_;
  std::string arrive_;
  bool json_ = false;
  bool geoJSON_ = false;
};
