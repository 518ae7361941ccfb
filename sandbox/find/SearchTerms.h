// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// One word of a search text, with the words that it matches.
struct SearchTerm {
  /// The word, its abbreviations, and the words that it abbreviates: "st", "street", "saint".
  std::vector<std::string> spellings;
  /// Whether the term also matches words that begin with it. False for numbers, except for an
  /// incomplete one at the end of the text.
  bool matchesPrefix = false;
  bool isNumber = false;

  const std::string& word() const { return spellings.front(); }
};

/// Returns the terms of a text, at most 16. `isIncomplete` means that the last word can be the
/// start of a longer one.
std::vector<SearchTerm> searchTerms(std::string_view text, bool isIncomplete);

}  // namespace quorvelkit::sandbox
