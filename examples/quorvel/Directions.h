// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/QVRoute.h>
#include <QuorvelKit/QVRouteRequest.h>

#include <iosfwd>
#include <optional>
#include <string>

/// Prints the totals and one table row for each turn: distance to the next turn, instruction,
/// street and road number.
void printDirections(std::ostream& out, const quorvelkit::QVRouteRequest& request,
                     const quorvelkit::QVRoute& route);

/// Returns miles or minutes of a route if they are possible on the earth.
std::optional<double> plausible(std::optional<double> measure);

/// Returns the line of a route as a GeoJSON geometry (RFC 7946).
quorvelkit::JSON routeGeometry(const quorvelkit::QVRoute& route);

/// Returns the route as a GeoJSON feature (RFC 7946) with the totals as properties.
std::string routeFeature(const quorvelkit::QVRoute& route);
