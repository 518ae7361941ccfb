// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvelkit {

/// The header fields of a request or response, in the order they came. Names keep the spelling
/// they were given and are compared without regard to case (RFC 9110, section 5.1).
class QUORVELKIT_EXPORT HTTPHeaderFields {
 public:
  using Field = std::pair<std::string, std::string>;

  /// The value under a name; absent when there is none. Valid until the next change.
  std::optional<std::string_view> value(std::string_view name) const;
  /// Replaces the value under a name, or removes it when no value is given. Does nothing when
  /// the name is no token (RFC 9110, section 5.6.2) or the value holds CR, LF or NUL.
  void set(std::string_view name, std::optional<std::string_view> value);
  /// Appends to the value under a name, behind the given separator. Refuses what set() refuses.
  void add(std::string_view name, std::string_view value, std::string_view separator = ",");

  /// Whether a text is a token (RFC 9110, section 5.6.2), as names and methods must be.
  static bool isToken(std::string_view text) noexcept;

  const std::vector<Field>& all() const noexcept { return fields_; }

 private:
  Field* find(std::string_view name);

  std::vector<Field> fields_;
};

}  // namespace quorvelkit
