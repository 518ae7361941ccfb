// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/ValueView.h>

namespace quorvelkit::detail {

// Parses the JSON number at the start of [begin, end) into `bits`. Returns the end of its text, or
// null if there is no valid number or if it is outside the range of a double. A 0 byte must follow
// `end`.
const char* parseNumber(const char* begin, const char* end, ValueBits& bits) noexcept;

}  // namespace quorvelkit::detail
