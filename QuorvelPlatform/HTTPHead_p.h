// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/HTTPHeaderFields.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/Outcome_p.h>

#include <memory>
#include <string_view>

namespace quorvelkit {

/// The fields of header lines. Values of a name that came more than once are joined with ", "
/// (RFC 9110, section 5.3), folded lines with a space (RFC 9112, section 5.2); what is no header
/// line is left out.
HTTPHeaderFields parseHeaderLines(std::string_view lines);

/// The response of an answer to a request for this URL.
std::shared_ptr<const HTTPURLResponse> makeResponse(const URL& requested, HTTPHead head);

}  // namespace quorvelkit
