// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// One word of a name or of a typed text, folded so that spellings of one word are equal.
struct SearchWord {
  std::string text;
  /// What follows an apostrophe, where that is long enough to be a word of its own: "aldosa" for
  /// "l'Aldosa", whose text is "laldosa". Otherwise empty.
  std::string tail;
};

/// The words of a UTF-8 text without regard to case, accents and punctuation: "Plaça d’Armes"
/// gives "placa" and "darmes" (tail "armes"). Letters that have no accents to lose are written
/// out where that is usual ("ß" as "ss", "ø" as "o"); scripts other than Latin keep their letters.
std::vector<SearchWord> searchWords(std::string_view text);

/// The words joined by single blanks: equal for names that differ in spelling only.
std::string foldedName(std::string_view name);

}  // namespace quorvelkit::sandbox
