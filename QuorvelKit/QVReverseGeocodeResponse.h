// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVAddress.h>
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <utility>

namespace quorvelkit {

/// The response to a QVReverseGeocodeRequest. Both properties are present for every body, also if
/// no address was found. QVAddress::matchAddress is absent if none was found.
class QUORVELKIT_EXPORT QVReverseGeocodeResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVReverseGeocodeResponse() override;

  /// The position of the address; (0, 0) if the answer has none.
  const std::optional<Coordinate>& location() const { return location_; }
  void setLocation(std::optional<Coordinate> location) { location_ = location; }
  /// The address.
  const std::optional<QVAddress>& address() const { return address_; }
  void setAddress(std::optional<QVAddress> address) { address_ = std::move(address); }

 protected:
  void buildModel() override;

 private:
  std::optional<Coordinate> location_;
  std::optional<QVAddress> address_;
};

}  // namespace quorvelkit
