// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Backend.h"

#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVRouteResponse.h>

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

/// `quorvel route`: asks for a route and prints its directions.
class RouteCommand {
 public:
  RouteCommand(CLI::App& program, Backend& backend);

  bool chosen() const { return command_->parsed(); }
  /// Returns the exit code: 0, or 1 after telling why on standard error.
  int run() const;

 private:
  /// The position that an end of the route gives itself or that its address has. Absent after
  /// telling why.
  std::optional<quorvelkit::Coordinate> positionOf(const std::string& place,
                                                   const std::string& otherPlace,
                                                   std::ostream& trace) const;
  std::shared_ptr<quorvelkit::QVRouteRequest> makeRequest(const quorvelkit::Coordinate& from,
                                                          const quorvelkit::Coordinate& to) const;
  void print(const quorvelkit::QVRouteRequest& request,
             const quorvelkit::QVRouteResponse& response) const;

  CLI::App* command_;
  Backend& backend_;
  std::string from_;
  std::string to_;
  std::string near_;
  std::string arrive_;
  bool json_ = false;
  bool geoJSON_ = false;
};
