// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/GrowingArray_p.h>

namespace quorvelkit::detail {

struct StringResult {
  const char* stop;     // after the closing quotation mark; on failure, where parsing stopped
  const char* problem;  // an error message, or null
  bool escaped;         // the string contains an escape sequence
};

// Parses a JSON string and appends its text. `p` is the position after the opening quotation mark.
StringResult parseString(const char* p, const char* end, GrowingArray<char>& text);

}  // namespace quorvelkit::detail
