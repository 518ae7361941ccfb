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

/// A point of a route. A member that is missing or of another kind is absent.
class QUORVELKIT_EXPORT QVPoint : public QVBaseObject {
 public:
  explicit QVPoint(JSON json);
  explicit QVPoint(std::optional<JSON> json) = delete;

  /// What to do here; null where the route just goes on. Lives as long as this point or a copy of
  /// it.
  const QVTurn* turn() const { return turn_.get(); }
  std::optional<std::string> notify() const { return read<std::string>(QVResponseKey::notify); }
  /// Time and distance from the start of the route, in seconds and in miles.
  std::optional<double> travelTimeInSeconds() const {
    return read<double>(QVResponseKey::travelTimeInSeconds);
  }
  std::optional<double> distanceInMiles() const {
    return read<double>(QVResponseKey::distanceInMiles);
  }
  std::optional<double> latitude() const { return read<double>(QVResponseKey::latitude); }
  std::optional<double> longitude() const { return read<double>(QVResponseKey::longitude); }
  /// Latitude and longitude; (0, 0) when either is absent.
  Coordinate location() const;
  /// The sentences to speak.
  std::optional<std::vector<std::string>> say() const {
    return read<std::vector<std::string>>(QVResponseKey::say);
  }
  /// The stretch of road that ends here and the crossing that is here, in the server's numbers.
  std::optional<std::int64_t> edge() const { return read<std::int64_t>(QVResponseKey::edge); }
  std::optional<std::int64_t> node() const { return read<std::int64_t>(QVResponseKey::node); }

 private:
  std::shared_ptr<const QVTurn> turn_;
};

}  // namespace quorvelkit
