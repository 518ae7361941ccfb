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

/// An address or a place that a search found. A member that is missing or of another kind is
/// absent.
class QUORVELKIT_EXPORT QVCandidate : public QVBaseObject {
 public:
  explicit QVCandidate(std::optional<JSON> json);

  /// Where it is; (0, 0) when the answer does not say. Absent only without JSON.
  const std::optional<Coordinate>& location() const { return location_; }
  void setLocation(std::optional<Coordinate> location) { location_ = location; }
  std::optional<std::string> address() const;
  /// How well it matches; 100 is best.
  std::optional<double> score() const;
  /// What else the server says of it.
  std::optional<ValueMap> attributes() const;
  /// Three of the attributes: "Match_addr", "magicKey" and "Addr_type".
  std::optional<std::string> matchAddress() const;
  std::optional<std::string> placeAddress() const;
  std::optional<std::string> addressType() const;
  QVOrigin origin() const;
  /// The provider's name, which the server sends under "provide".
  std::optional<std::string> provider() const;
  std::optional<double> rating() const;
  std::optional<std::int64_t> reviewCount() const;
  std::optional<std::string> providerUrl() const;
  std::optional<std::string> phone() const;
  /// Empty when there are none.
  std::vector<std::string> categories() const;

 private:
  std::optional<std::string> attribute(const KeyView& key) const;

  std::optional<Coordinate> location_;
};

}  // namespace quorvelkit
