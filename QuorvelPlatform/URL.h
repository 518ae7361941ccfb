// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// A URL reference (RFC 3986), with its text unchanged. May be relative; only sending a request
/// requires a scheme and a host.
class QUORVELKIT_EXPORT URL {
 public:
  /// Parses a text. Absent if the text is empty, if RFC 3986 does not allow it (for example a
  /// space, a quotation mark, a non-ASCII letter, "[" outside an IPv6 host), or if the port is
  /// above 65535. Does not encode or correct anything.
  static std::optional<URL> parse(std::string_view text);

  /// The text of the URL.
  const std::string& absoluteString() const noexcept { return text_; }
  /// The components, without decoding. Absent if the text does not contain them. The host does not
  /// include the brackets of an IPv6 address. The path is never absent but may be empty.
  std::optional<std::string_view> scheme() const noexcept { return part(scheme_); }
  std::optional<std::string_view> userInfo() const noexcept { return part(userInfo_); }
  std::optional<std::string_view> host() const noexcept { return part(host_); }
  std::optional<std::uint16_t> port() const noexcept { return port_; }
  std::string_view path() const noexcept { return part(path_).value_or(std::string_view()); }
  std::optional<std::string_view> query() const noexcept { return part(query_); }
  std::optional<std::string_view> fragment() const noexcept { return part(fragment_); }

  /// Resolves a reference against this URL (RFC 3986, section 5.2). Absent if this URL has no
  /// scheme.
  std::optional<URL> resolving(const URL& reference) const;

  /// Compares the texts.
  friend bool operator==(const URL& a, const URL& b) noexcept { return a.text_ == b.text_; }
  /// Prints the URL without its user information, which may contain a password.
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
