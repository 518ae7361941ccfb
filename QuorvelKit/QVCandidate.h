// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVOrigin.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit {

/// An address or a place that a search found. A property is absent if its member is missing or has
/// another type.
class QUORVELKIT_EXPORT QVCandidate : public QVBaseObject {
 public:
  /// Makes a candidate from an object of the answer.
  explicit QVCandidate(std::optional<JSON> json);

  /// The position; (0, 0) if the answer has none. Absent only without JSON.
  const std::optional<Coordinate>& location() const { return location_; }
  void setLocation(std::optional<Coordinate> location) { location_ = location; }
  /// The address or the name.
  std::optional<std::string> address() const;
  /// The quality of the match. The maximum is 100.
  std::optional<double> score() const;
  /// Additional values of the server.
  std::optional<ValueMap> attributes() const;
  /// The attributes "Match_addr", "magicKey" and "Addr_type".
  std::optional<std::string> matchAddress() const;
  std::optional<std::string> placeAddress() const;
  std::optional<std::string> addressType() const;
  /// The data source.
  QVOrigin origin() const;
  /// The name of the provider ("provide" in the wire format).
  std::optional<std::string> provider() const;
  /// Values of the provider.
  std::optional<double> rating() const;
  std::optional<std::int64_t> reviewCount() const;
  std::optional<std::string> providerUrl() const;
  std::optional<std::string> phone() const;
  /// Empty if the member is missing.
  std::vector<std::string> categories() const;

 private:
  std::optional<std::string> attribute(const KeyView& key) const;

  std::optional<Coordinate> location_;
};

}  // namespace quorvelkit
