// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Document_p.h>

namespace quorvelkit::detail {

struct StringResult {
  const char* problem;  // null when there is none
  bool escaped;
};

// Reads a JSON string from behind its opening quotation mark, moves the place behind the closing
// one and appends the text.
StringResult parseString(const char*& place, const char* end, Run<char>& text);

}  // namespace quorvelkit::detail
