// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/curl/RedirectRule_p.h>

#include <array>
#include <string>
#include <utility>

namespace quorvelkit {

namespace {

bool isRedirect(int statusCode) {
  return statusCode >= 301 && statusCode <= 308 && statusCode != 304;
}

bool hasScheme(const URL& url, std::string_view scheme) {
  return equalsIgnoringASCIICase(url.scheme().value_or(""), scheme);
}

bool haveSameOrigin(const URL& a, const URL& b) {
  const auto port = [](const URL& url) {
    return url.port().value_or(hasScheme(url, "https") ? 443 : 80);
  };
  return hasScheme(a, b.scheme().value_or("")) &&
         equalsIgnoringASCIICase(a.host().value_or(""), b.host().value_or("")) &&
         port(a) == port(b);
}

// Returns the absolute URL of a Location field, or nothing if it is not usable. If the location has
// no fragment, the fragment of the request's URL is kept.
std::optional<URL> resolvedLocation(const URL& from, std::string_view location) {
  const auto reference = URL::parse(location);
  if (!reference) return std::nullopt;
  auto to = from.resolving(*reference);
  if (!to || to->host().value_or("").empty()) return std::nullopt;
  if (!hasScheme(*to, "https") && (!hasScheme(*to, "http") || hasScheme(from, "https"))) {
    return std::nullopt;
  }
  if (from.fragment() && !to->fragment()) {
    to = URL::parse(to->absoluteString() + '#' + std::string(*from.fragment()));
  }
  return to;
}

}  // namespace

std::optional<URLRequest> redirectedRequest(const URLRequest& request, int statusCode,
                                            std::optional<std::string_view> location) {
  if (!isRedirect(statusCode) || !location) return std::nullopt;
  auto url = resolvedLocation(request.url(), *location);
  if (!url) return std::nullopt;
  const bool sameOrigin = haveSameOrigin(request.url(), *url);

  URLRequest next = request;
  next.setURL(*std::move(url));
  const bool becomesGet =
      statusCode == 303 || (statusCode <= 302 && request.httpMethod() == "POST");
  if (becomesGet) {
    next.setHTTPMethod("GET");
    if (next.httpBody()) next.setValue(std::nullopt, "Content-Type");
    next.setHTTPBody(std::nullopt);
  }
  if (sameOrigin) return next;

  if (next.httpBody() && !next.httpBody()->empty()) return std::nullopt;
  for (const auto& [name, value] : request.headerFields().all()) {
    if (equalsIgnoringASCIICase(name, "Accept")) continue;
    if (equalsIgnoringASCIICase(name, "Content-Type")) continue;
    next.setValue(std::nullopt, name);
  }
  return next;
}

}  // namespace quorvelkit
