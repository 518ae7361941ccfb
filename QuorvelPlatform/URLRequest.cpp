// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/URLRequest.h>

#include <array>
#include <ostream>

namespace quorvelkit {

void URLRequest::setHTTPMethod(std::string_view method) {
  if (!HTTPHeaderFields::isToken(method)) return;
  constexpr std::array<std::string_view, 6> upperCased = {"GET", "HEAD",   "POST",
                                                          "PUT", "DELETE", "CONNECT"};
  for (const std::string_view known : upperCased) {
    if (equalsIgnoringASCIICase(known, method)) method = known;
  }
  httpMethod_ = method;
}

std::ostream& operator<<(std::ostream& out, const URLRequest& request) {
  out << request.httpMethod() << ' ' << request.url();
  for (const auto& [name, value] : request.headerFields().all())
    out << ' ' << name << ": ...";
  if (request.httpBody()) out << " (" << request.httpBody()->size() << " bytes)";
  return out;
}

}  // namespace quorvelkit
