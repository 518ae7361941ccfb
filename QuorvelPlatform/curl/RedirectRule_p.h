// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLRequest.h>

#include <optional>
#include <string_view>

namespace quorvelkit {

/// The number of redirects that one data task follows. The next redirect fails the task.
constexpr int maximumRedirects = 20;

/// Returns the request to send after a redirect answer (RFC 9110, section 15.4), or nothing if the
/// answer is not followed and must be delivered. To another origin, the new request has no body and
/// no header fields of the old one except Accept and Content-Type. A redirect from https to http
/// is not followed.
std::optional<URLRequest> redirectedRequest(const URLRequest& request, int statusCode,
                                            std::optional<std::string_view> location);

}  // namespace quorvelkit
