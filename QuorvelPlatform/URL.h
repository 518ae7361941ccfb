// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// A URL: a text that satisfies the grammar of RFC 3986. Relative references are URLs too; only
/// sending asks for a scheme and a host. The text is kept as it was given.
class QUORVELKIT_EXPORT URL {
 public:
  /// The URL of a text; absent for an empty text, for any character or shape that RFC 3986 does
  /// not allow (a space, a quotation mark, a letter beyond ASCII, "[" outside an IPv6 host) and
  /// for a port above 65535. Nothing is encoded or repaired.
  static std::optional<URL> parse(std::string_view text);

  const std::string& absoluteString() const noexcept { return text_; }
  /// The components as they stand in the text, absent when the text has none. A host is without
  /// the brackets of an IPv6 address, a path is never absent but may be empty.
  std::optional<std::string_view> scheme() const noexcept { return part(scheme_); }
  std::optional<std::string_view> userInfo() const noexcept { return part(userInfo_); }
  std::optional<std::string_view> host() const noexcept { return part(host_); }
  std::optional<std::uint16_t> port() const noexcept { return port_; }
  std::string_view path() const noexcept { return part(path_).value_or(std::string_view()); }
  std::optional<std::string_view> query() const noexcept { return part(query_); }
  std::optional<std::string_view> fragment() const noexcept { return part(fragment_); }

  /// The URL that a reference means seen from this one (RFC 3986, section 5.2); absent when this
  /// URL has no scheme.
  std::optional<URL> resolving(const URL& reference) const;

  friend bool operator==(const URL& a, const URL& b) noexcept { return a.text_ == b.text_; }
  /// Prints the URL without its user information, which may hold a password.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out, const URL& url);

 private:
  struct Range {
    std::size_t begin = std::string::npos;
    std::size_t length = 0;
  };

  URL() = default;
  std::optional<std::string_view> part(Range range) const noexcept {
    if (range.begin == std::string::npos) return std::nullopt;
    return std::string_view(text_).substr(range.begin, range.length);
  }

  std::string text_;
  Range scheme_, userInfo_, host_, path_, query_, fragment_;
  std::optional<std::uint16_t> port_;
};

}  // namespace quorvelkit
