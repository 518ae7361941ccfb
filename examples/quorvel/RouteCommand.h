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

/// The sub-command `quorvel route`, which requests a route and prints its directions.
class RouteCommand {
 public:
  RouteCommand(CLI::App& program, Backend& backend);

  bool isChosen() const { return command_->parsed(); }
  /// Returns the exit code: 0, or 1 after an error message.
  int run() const;

 private:
  /// Returns the position of one end of the route; searches for it if `place` is a text. Writes
  /// what it chose to standard error, or an error message.
  std::optional<quorvelkit::Coordinate> endPosition(const std::string& place,
                                                    const std::string& otherPlace,
                                                    std::ostream& trace) const;
  std::shared_ptr<quorvelkit::QVRouteRequest> makeRequest(const quorvelkit::Coordinate& from,
                                                          const quorvelkit::Coordinate& to) const;
  int print(const quorvelkit::QVRouteRequest& request,
            const quorvelkit::QVRouteResponse& response) const;

  CLI::App* command_;
  Backend& backend_;
  std::string from_;
  std::string to_;
  std::string near_;
  std::string arrive_;
  double minimumScore_ = 80;
  std::string picture_;
  bool json_ = false;
  bool geoJSON_ = false;
};
