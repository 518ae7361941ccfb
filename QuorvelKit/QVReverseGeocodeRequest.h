// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <optional>

namespace quorvelkit {

/// Asks for the address at a location.
class QUORVELKIT_EXPORT QVReverseGeocodeRequest : public QVBaseRequest {
 public:
  QVReverseGeocodeRequest() = delete;
  explicit QVReverseGeocodeRequest(Coordinate location);
  ~QVReverseGeocodeRequest() override;

  Coordinate location() const { return location_; }
  void setLocation(Coordinate location) { location_ = location; }

  /// The resource under the find root of the cached configuration, with the location as
  /// parameters(), which each call replaces. Absent while there is no such root.
  std::optional<URL> url() override;

 private:
  Coordinate location_;
};

}  // namespace quorvelkit
