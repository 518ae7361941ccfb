// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVRoute.h>
#include <QuorvelKit/QVRouteRequest.h>

#include <iosfwd>
#include <string>

/// Prints the totals and one table row for each turn: distance to the next turn, instruction,
/// street and road number.
void printDirections(std::ostream& out, const quorvelkit::QVRouteRequest& request,
                     const quorvelkit::QVRoute& route);

/// Returns the route as a GeoJSON feature (RFC 7946) with the totals as properties.
std::string routeFeature(const quorvelkit::QVRoute& route);
