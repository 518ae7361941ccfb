// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvelkit::sandbox {
namespace {

constexpr double earthRadiusInMeters = 6371008.8;
constexpr double radiansPerDegree = std::numbers::pi / 180;

}  // namespace

double distanceInMeters(const Coordinate& a, const Coordinate& b) {
  const double lat = std::sin((b.latitude - a.latitude) * radiansPerDegree / 2);
  const double lon = std::sin((b.longitude - a.longitude) * radiansPerDegree / 2);
  const double h = lat * lat + std::cos(a.latitude * radiansPerDegree) *
                                   std::cos(b.latitude * radiansPerDegree) * lon * lon;
  return 2 * earthRadiusInMeters * std::asin(std::min(1.0, std::sqrt(h)));
}

double bearing(const Coordinate& from, const Coordinate& to) {
  const double lat1 = from.latitude * radiansPerDegree;
  const double lat2 = to.latitude * radiansPerDegree;
  const double lon = (to.longitude - from.longitude) * radiansPerDegree;
  const double y = std::sin(lon) * std::cos(lat2);
  const double x =
      std::cos(lat1) * std::sin(lat2) - std::sin(lat1) * std::cos(lat2) * std::cos(lon);
  const double degrees = std::atan2(y, x) / radiansPerDegree;
  return degrees < 0 ? degrees + 360 : degrees;
}

double turnAngle(double fromBearing, double toBearing) {
  const double angle = std::remainder(toBearing - fromBearing, 360.0);
  return angle == -180 ? 180 : angle;
}

Coordinate between(const Coordinate& a, const Coordinate& b, double fraction) {
  return {std::lerp(a.latitude, b.latitude, fraction),
          std::lerp(a.longitude, b.longitude, fraction)};
}

double nearestFraction(const Coordinate& a, const Coordinate& b, const Coordinate& position) {
  // Plane geometry, with longitudes scaled to the length of a degree of latitude.
  const double longitudeScale = std::cos(position.latitude * radiansPerDegree);
  const double lineX = (b.longitude - a.longitude) * longitudeScale;
  const double lineY = b.latitude - a.latitude;
  const double squaredLength = lineX * lineX + lineY * lineY;
  if (squaredLength == 0) return 0;
  const double toX = (position.longitude - a.longitude) * longitudeScale;
  const double toY = position.latitude - a.latitude;
  return std::clamp((toX * lineX + toY * lineY) / squaredLength, 0.0, 1.0);
}

}  // namespace quorvelkit::sandbox
