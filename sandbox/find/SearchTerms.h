// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// What one word of a typed text may stand for in a name.
struct SearchTerm {
  /// The word, and the words of which it is an abbreviation or which abbreviate it: "st",
  /// "street", "saint".
  std::vector<std::string> spellings;
  /// Whether names with a word that only begins with the typed one match too. Numbers are meant
  /// as they stand unless they may still be typed on.
  bool mayBeBeginning = false;
  bool isNumber = false;

  const std::string& word() const { return spellings.front(); }
};

/// The terms of a typed text; `unfinished` while its last word may not be complete. Words beyond
/// the sixteenth are left out.
std::vector<SearchTerm> searchTerms(std::string_view text, bool unfinished);

}  // namespace quorvelkit::sandbox
