// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// An address by its parts. A part that is missing or no text is absent.
class QUORVELKIT_EXPORT QVAddress : public QVBaseObject {
 public:
  using QVBaseObject::QVBaseObject;

  std::optional<std::string> region() const;
  std::optional<std::string> postal() const;
  /// The whole address in one line. Absent when no address was found: test this one.
  std::optional<std::string> matchAddress() const;
  std::optional<std::string> locationName() const;
  /// House number and street.
  std::optional<std::string> address() const;
  /// The code of the country, in spite of its name ("CountryCode" on the wire).
  std::optional<std::string> countyCode() const;
  std::optional<std::string> postalExtension() const;
  std::optional<std::string> neighborhood() const;
  std::optional<std::string> subregion() const;
  std::optional<std::string> city() const;
};

}  // namespace quorvelkit
