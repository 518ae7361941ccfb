// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

namespace quorvelkit::sandbox {

inline constexpr double metersPerMile = 1609.344;

/// The great-circle distance.
double distanceInMeters(const Coordinate& a, const Coordinate& b);

/// The compass bearing in degrees, clockwise from north, in [0, 360).
double bearing(const Coordinate& from, const Coordinate& to);

/// The angle from one bearing to another in degrees, in (-180, 180]; right is positive.
double turnAngle(double fromBearing, double toBearing);

/// Interpolates between two near positions; `fraction` is 0 to 1.
Coordinate between(const Coordinate& a, const Coordinate& b, double fraction);

/// Returns the fraction (0 to 1) of the line from `a` to `b` that is nearest to `position`. All
/// positions must be near each other.
double nearestFraction(const Coordinate& a, const Coordinate& b, const Coordinate& position);

}  // namespace quorvelkit::sandbox
