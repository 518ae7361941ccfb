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

/// A way to go on typing. A member that is missing or of another kind is absent.
class QUORVELKIT_EXPORT QVSuggestion : public QVBaseObject {
 public:
  using QVBaseObject::QVBaseObject;

  /// What to show.
  std::optional<std::string> text() const;
  /// What finds exactly this place: QVAddressCandidatesRequest::setMagicKey.
  std::optional<std::string> magicKey() const;
  /// Whether it stands for many places ("restaurants") and not for one.
  std::optional<bool> isCollection() const;
  QVOrigin origin() const;
  /// The provider's name, which the server sends under "provide".
  std::optional<std::string> provider() const;
  std::optional<double> score() const;
  std::optional<double> rating() const;
  std::optional<std::int64_t> reviewCount() const;
  std::optional<std::int64_t> price() const;
  std::optional<std::string> providerUrl() const;
  std::optional<std::string> menuUrl() const;
  std::optional<std::string> url() const;
  std::optional<std::string> phone() const;
  /// Empty when there are none.
  std::vector<std::string> categories() const;
};

}  // namespace quorvelkit
