// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::sandbox {

/// One word of a name or a search text, folded so that spellings of one word are equal.
struct SearchWord {
  std::string text;
  /// The part after an apostrophe if it is long enough to be a word: "aldosa" for "l'Aldosa", whose
  /// text is "laldosa". Otherwise empty.
  std::string tail;
};

/// Splits a UTF-8 text into words and removes case, accents and punctuation: "Plaça d’Armes" gives
/// "placa" and "darmes" (tail "armes"). Transliterates Latin letters to ASCII ("ß" to "ss", "ø" to
/// "o"); other scripts keep their letters.
std::vector<SearchWord> searchWords(std::string_view text);

/// Returns the words, joined by single spaces. Equal for names that differ in spelling only.
std::string foldedName(std::string_view name);

}  // namespace quorvelkit::sandbox
