// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/SearchWords.h"

#include <QuorvelPlatform/FatalError.h>

#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdint>

namespace quorvelkit::sandbox {
namespace {

constexpr std::size_t minimumTailLength = 3;

const icu::Transliterator& accentRemover() {
  static const icu::Transliterator* const remover = [] {
    UErrorCode status = U_ZERO_ERROR;
    const auto* made = icu::Transliterator::createInstance("NFKD; [:Mn:] Remove; Latin-ASCII",
                                                           UTRANS_FORWARD, status);
    if (U_FAILURE(status) || made == nullptr) fatalError("ICU has no transliteration data");
    return made;
  }();
  return *remover;
}

/// Returns the text in lower case without accents. Letters, digits and apostrophes stay; other
/// characters become spaces.
std::string folded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  const bool isASCII = std::all_of(text.begin(), text.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (isASCII) {  // True for nearly all names, and much faster than ICU.
    for (const char c : text) {
      const bool upper = c >= 'A' && c <= 'Z';
      const bool kept = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '\'';
      result.push_back(upper ? static_cast<char>(c - 'A' + 'a') : kept ? c : ' ');
    }
    return result;
  }
  auto unicode = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  accentRemover().transliterate(unicode);
  unicode.foldCase();
  for (std::int32_t i = 0; i < unicode.length(); i = unicode.moveIndex32(i, 1)) {
    const UChar32 character = unicode.char32At(i);
    const bool kept =
        character == '\'' || u_isalnum(character) || (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
    if (kept) {
      icu::UnicodeString(character).toUTF8String(result);
    } else {
      result.push_back(' ');
    }
  }
  return result;
}

}  // namespace

std::vector<SearchWord> searchWords(std::string_view text) {
  std::vector<SearchWord> words;
  const std::string letters = folded(text);
  std::size_t end = 0;
  while (true) {
    const std::size_t begin = letters.find_first_not_of(' ', end);
    if (begin == std::string::npos) return words;
    end = std::min(letters.find(' ', begin), letters.size());
    const std::string spelled = letters.substr(begin, end - begin);

    SearchWord word{spelled, {}};
    std::erase(word.text, '\'');
    if (word.text.empty()) continue;
    const std::size_t apostrophe = spelled.rfind('\'');
    if (apostrophe != std::string::npos && apostrophe > 0 &&
        spelled.size() - apostrophe > minimumTailLength) {
      word.tail = spelled.substr(apostrophe + 1);
    }
    words.push_back(std::move(word));
  }
}

std::string foldedName(std::string_view name) {
  std::string joined;
  for (const SearchWord& word : searchWords(name)) {
    if (!joined.empty()) joined += ' ';
    joined += word.text;
  }
  return joined;
}

}  // namespace quorvelkit::sandbox
