// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVPoint.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quorvelkit {

/// A route of the navigation server. A property is absent if its member is missing or has another
/// type; the points of any other JSON are empty. Copies share the points.
class QUORVELKIT_EXPORT QVRoute : public QVBaseObject {
 public:
  /// Makes a route and its points from the body of an answer.
  explicit QVRoute(JSON json);
  explicit QVRoute(std::optional<JSON> json) = delete;

  /// The points in driving order. Valid while this route or a copy of it exists.
  const std::vector<QVPoint>& points() const { return *points_; }
  /// The length and the travel time of the route.
  std::optional<double> totalDistanceInMiles() const;
  std::optional<double> totalDurationInMinutes() const;
  /// The numbers of the road network nodes at both ends.
  std::optional<std::int64_t> startNode() const;
  std::optional<std::int64_t> endNode() const;

 private:
  std::shared_ptr<const std::vector<QVPoint>> points_;
};

}  // namespace quorvelkit
