// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/URL.h>

#include <uriparser/Uri.h>

#include <algorithm>
#include <charconv>
#include <ostream>

namespace quorvelkit {

namespace {

// A parsed text in uriparser's own shape.
class ParsedURI {
 public:
  ParsedURI() = default;
  explicit ParsedURI(std::string_view text)
      : valid_(uriParseSingleUriExA(&uri_, text.data(), text.data() + text.size(), nullptr) ==
               URI_SUCCESS) {}
  ParsedURI(const ParsedURI&) = delete;
  ParsedURI& operator=(const ParsedURI&) = delete;
  ~ParsedURI() { uriFreeUriMembersA(&uri_); }

  bool isValid() const { return valid_; }
  const UriUriA& get() const { return uri_; }
  UriUriA* out() { return &uri_; }

 private:
  UriUriA uri_{};
  bool valid_ = true;
};

std::optional<std::uint16_t> portNumber(std::string_view digits) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
  if (error != std::errc()) return std::nullopt;
  return port;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  if (text.empty()) return std::nullopt;
  URL url;
  url.text_ = text;
  const std::string& own = url.text_;
  const ParsedURI parsed(own);
  if (!parsed.isValid()) return std::nullopt;
  const UriUriA& uri = parsed.get();

  const auto range = [&](const char* first, const char* afterLast) {
    return Range{static_cast<std::size_t>(first - own.data()),
                 static_cast<std::size_t>(afterLast - first)};
  };
  // An empty host points to a place outside the text.
  const auto take = [&](const UriTextRangeA& from, Range& into) {
    if (from.first == nullptr) return;
    into = from.first == from.afterLast ? Range{0, 0} : range(from.first, from.afterLast);
  };
  take(uri.scheme, url.scheme_);
  take(uri.userInfo, url.userInfo_);
  take(uri.hostText, url.host_);
  take(uri.query, url.query_);
  take(uri.fragment, url.fragment_);

  if (uri.portText.first != nullptr && uri.portText.first != uri.portText.afterLast) {
    const Range port = range(uri.portText.first, uri.portText.afterLast);
    url.port_ = portNumber(std::string_view(own).substr(port.begin, port.length));
    if (!url.port_) return std::nullopt;
  }

  // The path is what remains between the authority (or the scheme) and the query.
  std::size_t begin = url.scheme_.begin == std::string::npos ? 0 : url.scheme_.length + 1;
  if (own.compare(begin, 2, "//") == 0) begin = own.find_first_of("/?#", begin + 2);
  begin = std::min(begin, own.size());
  const std::size_t end = std::min(own.find_first_of("?#", begin), own.size());
  url.path_ = Range{begin, end - begin};
  return url;
}

std::optional<URL> URL::resolving(const URL& reference) const {
  const ParsedURI base(text_);
  const ParsedURI relative(reference.text_);
  ParsedURI absolute;
  if (uriAddBaseUriA(absolute.out(), &relative.get(), &base.get()) != URI_SUCCESS) {
    return std::nullopt;
  }
  int length = 0;
  if (uriToStringCharsRequiredA(&absolute.get(), &length) != URI_SUCCESS) return std::nullopt;
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  if (uriToStringA(text.data(), &absolute.get(), length + 1, nullptr) != URI_SUCCESS) {
    return std::nullopt;
  }
  text.pop_back();
  return parse(text);
}

std::ostream& operator<<(std::ostream& out, const URL& url) {
  const std::string_view text = url.absoluteString();
  if (!url.userInfo()) return out << text;
  // In an authority, "@" stands behind the user information alone.
  const std::size_t authority = text.find("//") + 2;
  return out << text.substr(0, authority) << text.substr(text.find('@', authority) + 1);
}

}  // namespace quorvelkit
