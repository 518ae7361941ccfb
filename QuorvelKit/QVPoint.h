// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVTurn.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit {

/// A point of a route. A property is absent if its member is missing or has another type.
class QUORVELKIT_EXPORT QVPoint : public QVBaseObject {
 public:
  /// Makes a point from an object of the answer.
  explicit QVPoint(JSON json);
  explicit QVPoint(std::optional<JSON> json) = delete;

  /// The turn at this point, or null. Valid while this point or a copy of it exists.
  const QVTurn* turn() const { return turn_.get(); }
  /// The member "notify".
  std::optional<std::string> notify() const { return read<std::string>(QVResponseKey::notify); }
  /// Time and distance from the start of the route.
  std::optional<double> travelTimeInSeconds() const {
    return read<double>(QVResponseKey::travelTimeInSeconds);
  }
  std::optional<double> distanceInMiles() const {
    return read<double>(QVResponseKey::distanceInMiles);
  }
  /// Latitude and longitude in degrees.
  std::optional<double> latitude() const { return read<double>(QVResponseKey::latitude); }
  std::optional<double> longitude() const { return read<double>(QVResponseKey::longitude); }
  /// Latitude and longitude; (0, 0) if either is absent.
  Coordinate location() const;
  /// The sentences of the spoken instruction.
  std::optional<std::vector<std::string>> say() const {
    return read<std::vector<std::string>>(QVResponseKey::say);
  }
  /// The number of the road network edge that ends at this point, and of the node at this point.
  std::optional<std::int64_t> edge() const { return read<std::int64_t>(QVResponseKey::edge); }
  std::optional<std::int64_t> node() const { return read<std::int64_t>(QVResponseKey::node); }

 private:
  std::shared_ptr<const QVTurn> turn_;
};

}  // namespace quorvelkit
