// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVAddress.h>
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <utility>

namespace quorvelkit {

/// The answer to a QVReverseGeocodeRequest. Both members are present whenever there was a body,
/// also one that holds no address: look at the parts of the address, say
/// QVAddress::matchAddress, to learn whether one was found.
class QUORVELKIT_EXPORT QVReverseGeocodeResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVReverseGeocodeResponse() override;

  /// Where the address is; (0, 0) when the answer does not say.
  const std::optional<Coordinate>& location() const { return location_; }
  void setLocation(std::optional<Coordinate> location) { location_ = location; }
  const std::optional<QVAddress>& address() const { return address_; }
  void setAddress(std::optional<QVAddress> address) { address_ = std::move(address); }

 protected:
  void buildModel() override;

 private:
  std::optional<Coordinate> location_;
  std::optional<QVAddress> address_;
};

}  // namespace quorvelkit
