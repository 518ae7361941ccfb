// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/HTTPHeaderFields.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/TaskResult_p.h>

#include <memory>
#include <string_view>

namespace quorvelkit {

/// Parses header lines. Joins several values of one name with ", " (RFC 9110, section 5.3) and
/// folded lines with a space (RFC 9112, section 5.2). Ignores lines without a colon.
HTTPHeaderFields parseHeaderFields(std::string_view lines);

/// Builds the response of a request for this URL.
std::shared_ptr<const HTTPURLResponse> makeResponse(const URL& requested, HTTPHeaderBlock header);

}  // namespace quorvelkit
