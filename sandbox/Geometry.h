// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

namespace quorvelkit::sandbox {

inline constexpr double metersPerMile = 1609.344;

/// Great-circle distance in meters.
double distanceInMeters(const Coordinate& a, const Coordinate& b);

/// Compass bearing from one position to another: degrees clockwise from north, 0 to below 360.
double bearing(const Coordinate& from, const Coordinate& to);

/// The turn from one bearing to another in degrees: above -180 to 180, right is positive.
double turnAngle(double fromBearing, double toBearing);

/// The position that lies the given fraction (0 to 1) of the way between two near positions.
Coordinate between(const Coordinate& a, const Coordinate& b, double fraction);

/// Where on the line between two near positions a third one is closest, as a fraction 0 to 1.
double nearestFraction(const Coordinate& a, const Coordinate& b, const Coordinate& position);

}  // namespace quorvelkit::sandbox
