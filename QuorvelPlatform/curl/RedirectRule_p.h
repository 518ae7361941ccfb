// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLRequest.h>

#include <optional>
#include <string_view>

namespace quorvelkit {

/// Redirects followed for one task; the next one fails it.
constexpr int maximumRedirects = 20;

/// The request that an answer asks to send in place of this one (RFC 9110, section 15.4); absent
/// when the answer is to be delivered. Nothing of the request but Accept and Content-Type goes to
/// another origin, no body goes there either, and no redirect leads from https to http.
std::optional<URLRequest> redirected(const URLRequest& request, int statusCode,
                                     std::optional<std::string_view> location);

}  // namespace quorvelkit
