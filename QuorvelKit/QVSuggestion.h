// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVOrigin.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit {

/// A suggestion for an incomplete search text. A property is absent if its member is missing or has
/// another type.
class QUORVELKIT_EXPORT QVSuggestion : public QVBaseObject {
 public:
  using QVBaseObject::QVBaseObject;

  /// The text to display.
  std::optional<std::string> text() const;
  /// The key for QVAddressCandidatesRequest::setMagicKey, which finds this place only.
  std::optional<std::string> magicKey() const;
  /// True for a group of places such as "restaurants".
  std::optional<bool> isCollection() const;
  /// The data source.
  QVOrigin origin() const;
  /// The name of the provider ("provide" in the wire format).
  std::optional<std::string> provider() const;
  /// Values of the provider.
  std::optional<double> score() const;
  std::optional<double> rating() const;
  std::optional<std::int64_t> reviewCount() const;
  std::optional<std::int64_t> price() const;
  std::optional<std::string> providerUrl() const;
  std::optional<std::string> menuUrl() const;
  std::optional<std::string> url() const;
  std::optional<std::string> phone() const;
  /// Empty if the member is missing.
  std::vector<std::string> categories() const;
};

}  // namespace quorvelkit
