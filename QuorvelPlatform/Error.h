// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// An error: a domain that names the source, a code with a meaning in that domain, and texts by
/// key. Immutable; concurrent reads are safe. A copy costs one atomic increment.
class QUORVELKIT_EXPORT Error {
 public:
  /// Texts by key.
  using UserInfo = std::map<std::string, std::string, std::less<>>;

  /// The key of the text that localizedDescription() returns.
  static constexpr std::string_view localizedDescriptionKey = "localizedDescription";
  /// The key of the text that technicalDescription() returns.
  static constexpr std::string_view technicalDescriptionKey = "technicalDescription";

  /// Creates an error with these values.
  Error(std::string domain, std::int64_t code, UserInfo userInfo = {});
  /// Creates an error with this text as its localizedDescription().
  static Error described(std::string domain, std::int64_t code, std::string description);

  /// The values of the error.
  const std::string& domain() const noexcept;
  std::int64_t code() const noexcept;
  const UserInfo& userInfo() const noexcept;
  /// Returns the text of localizedDescriptionKey. Without one, returns a sentence with domain and
  /// code.
  std::string localizedDescription() const;
  /// Returns the reason in English for logs and diagnosis, mostly a message of the network or TLS
  /// library. Absent if there is none. May contain hosts, ports and file names. Never contains user
  /// names, passwords, header fields or the query of a URL.
  std::optional<std::string> technicalDescription() const;

  /// Compares domain, code and user info.
  friend QUORVELKIT_EXPORT bool operator==(const Error& a, const Error& b) noexcept;
  /// Prints domain, code and description.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out, const Error& error);

 private:
  struct Fields;
  std::shared_ptr<const Fields> fields_;
};

}  // namespace quorvelkit
