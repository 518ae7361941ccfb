// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
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

  Error(std::string domain, std::int64_t code, UserInfo userInfo = {});
  /// An error whose user info holds only this description.
  static Error described(std::string domain, std::int64_t code, std::string description);

  const std::string& domain() const noexcept;
  std::int64_t code() const noexcept;
  const UserInfo& userInfo() const noexcept;
  /// The text under localizedDescriptionKey, or a sentence with domain and code without one.
  std::string localizedDescription() const;

  friend QUORVELKIT_EXPORT bool operator==(const Error& a, const Error& b) noexcept;
  /// Prints domain, code and description.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out, const Error& error);

 private:
  struct Fields;
  std::shared_ptr<const Fields> fields_;
};

}  // namespace quorvelkit
