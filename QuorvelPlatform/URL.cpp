// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/URL.h>

#include <uriparser/Uri.h>

#include <algorithm>
#include <charconv>
#include <new>
#include <ostream>

namespace quorvelkit {

namespace {

// Owns uriparser's result.
class ParsedURI {
 public:
  explicit ParsedURI(std::string_view text)
      : result_(uriParseSingleUriExA(&uri_, text.data(), text.data() + text.size(), nullptr)) {
    if (result_ == URI_ERROR_MALLOC) throw std::bad_alloc();
  }
  ParsedURI(const ParsedURI&) = delete;
  ParsedURI& operator=(const ParsedURI&) = delete;
  ~ParsedURI() { uriFreeUriMembersA(&uri_); }

  bool isValid() const { return result_ == URI_SUCCESS; }
  const UriUriA& get() const { return uri_; }

 private:
  UriUriA uri_{};
  const int result_;
};

std::optional<std::uint16_t> portNumber(std::string_view digits) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
  if (error != std::errc()) return std::nullopt;
  return port;
}

// RFC 3986, section 5.2.4.
std::string withoutDotSegments(std::string_view path) {
  std::string kept;
  const auto dropLast = [&] { kept.resize(std::min(kept.rfind('/'), kept.size())); };
  while (!path.empty()) {
    if (path.starts_with("../")) {
      path.remove_prefix(3);
    } else if (path.starts_with("./") || path.starts_with("/./")) {
      path.remove_prefix(2);
    } else if (path.starts_with("/../")) {
      path.remove_prefix(3);
      dropLast();
    } else if (path == "/." || path == "/..") {
      if (path == "/..") dropLast();
      path = "/";
    } else if (path == "." || path == "..") {
      path = {};
    } else {
      const std::string_view segment = path.substr(0, path.find('/', 1));
      kept += segment;
      path.remove_prefix(segment.size());
    }
  }
  return kept;
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
  // For an empty host, uriparser returns a pointer outside the text.
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

  // The path begins after the authority, or after the scheme, and ends before the query.
  std::size_t begin = url.scheme_.begin == std::string::npos ? 0 : url.scheme_.length + 1;
  if (own.compare(begin, 2, "//") == 0) begin = own.find_first_of("/?#", begin + 2);
  begin = std::min(begin, own.size());
  const std::size_t end = std::min(own.find_first_of("?#", begin), own.size());
  url.path_ = Range{begin, end - begin};
  return url;
}

// RFC 3986, section 5.2.2. Components are copied unchanged.
std::optional<URL> URL::resolving(const URL& reference) const {
  if (!scheme()) return std::nullopt;
  const auto upToPath = [](const URL& url) { return url.text_.substr(0, url.path_.begin); };
  const bool hasAuthority = reference.text_.starts_with("//");
  std::string target;
  std::string path(reference.path());
  auto query = reference.query();
  if (reference.scheme()) {
    target = upToPath(reference);
  } else if (hasAuthority) {
    target = text_.substr(0, scheme_.length + 1) + upToPath(reference);
  } else {
    target = upToPath(*this);
    if (path.empty()) {
      path = this->path();
      if (!query) query = this->query();
    } else if (path.front() != '/') {
      const std::string_view own = this->path();
      const bool isRoot = own.empty() && host_.begin != std::string::npos;
      path.insert(0, isRoot ? "/" : own.substr(0, own.rfind('/') + 1));
    }
  }
  target += withoutDotSegments(path);
  if (query) target.append("?").append(*query);
  if (const auto fragment = reference.fragment()) target.append("#").append(*fragment);
  return parse(target);
}

std::ostream& operator<<(std::ostream& out, const URL& url) {
  const std::string_view text = url.absoluteString();
  if (!url.userInfo()) return out << text;
  // In an authority, "@" can only follow the user information.
  const std::size_t authority = text.find("//") + 2;
  return out << text.substr(0, authority) << text.substr(text.find('@', authority) + 1);
}

}  // namespace quorvelkit
