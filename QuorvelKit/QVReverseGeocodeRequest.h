// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <optional>

namespace quorvelkit {

/// Requests the address of a location.
class QUORVELKIT_EXPORT QVReverseGeocodeRequest : public QVBaseRequest {
 public:
  QVReverseGeocodeRequest() = delete;
  /// Makes a request for a location.
  explicit QVReverseGeocodeRequest(Coordinate location);
  ~QVReverseGeocodeRequest() override;

  /// The location, in degrees.
  Coordinate location() const { return location_; }
  void setLocation(Coordinate location) { location_ = location; }

  /// Returns the URL on the find server and replaces parameters() by the location. Absent if the
  /// cached configuration has no root URL of the find server.
  std::optional<URL> url() override;

 private:
  Coordinate location_;
};

}  // namespace quorvelkit
