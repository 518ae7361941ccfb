// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// The parts of an address. A part is absent if it is missing or not a string.
class QUORVELKIT_EXPORT QVAddress : public QVBaseObject {
 public:
  using QVBaseObject::QVBaseObject;

  /// The state or another region, and the postal code.
  std::optional<std::string> region() const;
  std::optional<std::string> postal() const;
  /// The whole address in one line. Absent if no address was found.
  std::optional<std::string> matchAddress() const;
  /// The member "Loc_name".
  std::optional<std::string> locationName() const;
  /// House number and street.
  std::optional<std::string> address() const;
  /// The country code ("CountryCode" in the wire format).
  std::optional<std::string> countyCode() const;
  /// The extension of the postal code, and parts of the region: neighborhood, subregion, city.
  std::optional<std::string> postalExtension() const;
  std::optional<std::string> neighborhood() const;
  std::optional<std::string> subregion() const;
  std::optional<std::string> city() const;
};

}  // namespace quorvelkit
