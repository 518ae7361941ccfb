// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Document_p.h>

namespace quorvelkit::detail {

struct StringResult {
  const char* stop;     // behind the closing quotation mark, or where the problem is
  const char* problem;  // null when there is none
  bool escaped;
};

// Reads a JSON string from behind its opening quotation mark and appends the text.
StringResult parseString(const char* p, const char* end, Run<char>& text);

}  // namespace quorvelkit::detail
