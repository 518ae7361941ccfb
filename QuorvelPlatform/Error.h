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

/// What went wrong: a domain that says who speaks, a code that has its meaning in that domain,
/// and texts by key. Immutable and cheap to copy.
class QUORVELKIT_EXPORT Error {
 public:
  using UserInfo = std::map<std::string, std::string, std::less<>>;

  /// The key of the text that localizedDescription() returns.
  static constexpr std::string_view localizedDescriptionKey = "localizedDescription";
  /// The key of the text that technicalDescription() returns.
  static constexpr std::string_view technicalDescriptionKey = "technicalDescription";

  Error(std::string domain, std::int64_t code, UserInfo userInfo = {});
  /// An error whose user info holds only this description.
  static Error described(std::string domain, std::int64_t code, std::string description);

  const std::string& domain() const noexcept;
  std::int64_t code() const noexcept;
  const UserInfo& userInfo() const noexcept;
  /// The text under localizedDescriptionKey, or a sentence with domain and code without one.
  std::string localizedDescription() const;
  /// The reason in the words of the network or TLS library, in English, for logs and for people who
  /// look for a fault; absent when there is none. May name hosts, ports and files, never user
  /// names, passwords, header fields or the query of a URL.
  std::optional<std::string> technicalDescription() const;

  friend QUORVELKIT_EXPORT bool operator==(const Error& a, const Error& b) noexcept;
  /// Prints domain, code and description.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out, const Error& error);

 private:
  struct Fields;
  std::shared_ptr<const Fields> fields_;
};

}  // namespace quorvelkit
