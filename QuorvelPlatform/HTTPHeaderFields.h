// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvelkit {

/// The header fields of a request or response, in the order in which they were added. Names keep
/// their spelling; comparisons ignore their case (RFC 9110, section 5.1).
class QUORVELKIT_EXPORT HTTPHeaderFields {
 public:
  /// A name and a value.
  using Field = std::pair<std::string, std::string>;

  /// Returns the value of a field. Absent if there is no such field. Valid until the next change.
  std::optional<std::string_view> value(std::string_view name) const;
  /// Sets the value of a field, or removes the field if the value is absent. Does nothing if the
  /// name is not a token (RFC 9110, section 5.6.2) or if the value contains CR, LF or NUL.
  void set(std::string_view name, std::optional<std::string_view> value);
  /// Appends separator and value to the value of a field. Adds the field if there is none. Does
  /// nothing for the names and values that set() ignores.
  void add(std::string_view name, std::string_view value, std::string_view separator = ",");

  /// Returns true if the text is a token (RFC 9110, section 5.6.2). Field names and methods are
  /// tokens.
  static bool isToken(std::string_view text) noexcept;

  /// All fields.
  const std::vector<Field>& all() const noexcept { return fields_; }

 private:
  Field* find(std::string_view name);

  std::vector<Field> fields_;
};

}  // namespace quorvelkit
