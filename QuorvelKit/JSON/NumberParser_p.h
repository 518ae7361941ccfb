// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/ValueView.h>

namespace quorvelkit::detail {

// Reads the JSON number at the front of [begin, end), behind which stands a 0, into the bits.
// Returns the end of its text, or null when there is none or it is beyond the range of a double.
const char* parseNumber(const char* begin, const char* end, ValueBits& bits) noexcept;

}  // namespace quorvelkit::detail
