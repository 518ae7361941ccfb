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

/// A route as the navigation server computed it. Making one never fails: whatever the document
/// lacks is absent, and a document that is no route has no points. Copies share the points.
class QUORVELKIT_EXPORT QVRoute : public QVBaseObject {
 public:
  explicit QVRoute(JSON json);
  explicit QVRoute(std::optional<JSON> json) = delete;

  /// The points in their order along the route. Lives as long as this route or a copy of it.
  const std::vector<QVPoint>& points() const { return *points_; }
  std::optional<double> totalDistanceInMiles() const;
  std::optional<double> totalDurationInMinutes() const;
  /// The crossings at both ends, in the server's numbers.
  std::optional<std::int64_t> startNode() const;
  std::optional<std::int64_t> endNode() const;

 private:
  std::shared_ptr<const std::vector<QVPoint>> points_;
};

}  // namespace quorvelkit
