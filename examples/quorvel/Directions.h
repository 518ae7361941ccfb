// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVRoute.h>
#include <QuorvelKit/QVRouteRequest.h>

#include <iosfwd>
#include <string>

/// Prints totals and a table: how far it is to the next turn, what to do, the street, its number.
void printDirections(std::ostream& out, const quorvelkit::QVRouteRequest& request,
                     const quorvelkit::QVRoute& route);

/// The route as a GeoJSON feature (RFC 7946): its line, and its totals as properties.
std::string routeFeature(const quorvelkit::QVRoute& route);
