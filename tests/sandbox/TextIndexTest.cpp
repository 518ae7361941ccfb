// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/SearchWords.h"
#include "sandbox/find/TextIndex.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace quorvelkit::sandbox {
namespace {

TEST(SearchWordsTest, CaseAccentsAndPunctuationAreRemoved) {
  const std::pair<const char*, const char*> cases[] = {
      {"1726 Fleet Street", "1726 fleet street"},
      {"  Fleet-Street,  (East)", "fleet street east"},
      {"AVINGUDA Merítxell", "avinguda meritxell"},
      {"Plac\u0327a", "placa"},  // A combining accent.
      {"Stra\u00DFe", "strasse"},
      {"\u00D8rsted \u0141\u00F3d\u017A", "orsted lodz"},
      {"O'Donnell", "odonnell"},
      {"O\u2019Donnell", "odonnell"},
      {"\u039F\u03B4\u03CC\u03C2", "\u03BF\u03B4\u03BF\u03C3"},  // Greek, with a final sigma.
      {"\u041D\u0435\u0432\u0441\u043A\u0438\u0439", "\u043D\u0435\u0432\u0441\u043A\u0438\u0438"},
      {"''", ""},
      {"\xFF\xFE", ""},  // Not UTF-8.
      {"", ""},
  };
  for (const auto& [text, folded] : cases)
    EXPECT_EQ(foldedName(text), folded) << text;
  EXPECT_EQ(searchWords("l'Aldosa").front().tail, "aldosa");
  EXPECT_EQ(searchWords("Fell's").front().tail, "");
}

// The words of name and detail, and the words of the region.
using FoldedText = std::pair<std::vector<std::string>, std::vector<std::string>>;

std::vector<std::string> folded(const std::string& text) {
  std::vector<std::string> words;
  for (const SearchWord& word : searchWords(text)) {
    words.push_back(word.text);
    if (!word.tail.empty()) words.push_back(word.tail);
  }
  return words;
}

/// The reference for TextIndex::find(): a check without an index.
bool matches(const FoldedText& text, const std::vector<SearchTerm>& terms) {
  const auto has = [](const std::vector<std::string>& words, const SearchTerm& term) {
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
      return std::count(term.spellings.begin(), term.spellings.end(), word) > 0 ||
             (term.matchesPrefix && word.starts_with(term.word()));
    });
  };
  const auto hasAny = [&](const SearchTerm& term) { return has(text.first, term); };
  return std::all_of(terms.begin(), terms.end(),
                     [&](const auto& term) { return hasAny(term) || has(text.second, term); }) &&
         std::any_of(terms.begin(), terms.end(), hasAny);
}

TEST(TextIndexTest, FindsTheSameTextsAsAScan) {
  std::mt19937 random(20240501);
  const auto below = [&](std::size_t n) { return random() % n; };
  // Few letters, so that words are often prefixes of others. Some words are abbreviations.
  const std::vector<std::string> letters{"a", "b", "\u00E0", "B", "1", "'", "aba"};
  const std::vector<std::string> whole{"Street", "st", "Saint", "north", "n", "12"};
  const auto text = [&](std::size_t most) {
    std::string result;
    for (std::size_t words = below(most + 1); words > 0; --words) {
      if (below(4) == 0) {
        result += whole[below(whole.size())];
      } else {
        for (std::size_t n = 1 + below(5); n > 0; --n)
          result += letters[below(letters.size())];
      }
      result += below(5) == 0 ? "-" : " ";
    }
    return result;
  };
  std::vector<TextIndex::Text> texts;
  std::vector<FoldedText> foldedTexts;
  for (int i = 0; i < 400; ++i) {
    texts.push_back({text(4), text(2), text(2)});
    const auto& [name, detail, region] = texts.back();
    foldedTexts.emplace_back(folded(name + ' ' + detail), folded(region));
  }
  const TextIndex index(texts.size(), [&](std::size_t i) { return texts[i]; });

  std::size_t nonEmpty = 0;
  for (int i = 0; i < 1500; ++i) {
    const std::string typed = text(3);
    const auto terms = searchTerms(typed, below(2) == 0);
    std::set<std::uint32_t> found;
    for (const auto& match : index.find(terms)) {
      EXPECT_TRUE(found.insert(match.text).second) << "twice: " << typed;
      EXPECT_GT(match.coverage, 0);
      EXPECT_LE(match.coverage, 1);
    }
    std::set<std::uint32_t> scanned;
    for (std::uint32_t number = 0; number < texts.size(); ++number) {
      if (matches(foldedTexts[number], terms)) scanned.insert(number);
    }
    EXPECT_EQ(found, scanned) << typed;
    nonEmpty += found.empty() ? 0 : 1;
  }
  EXPECT_GT(nonEmpty, 300U);
}

TEST(TextIndexTest, CoverageIsTheTypedFractionOfTheName) {
  const TextIndex::Text text{"Grace Memorial Church", "place of worship", "Baltimore"};
  const TextIndex index(1, [&](std::size_t) { return text; });
  const std::tuple<const char*, double, bool> cases[] = {
      {"Grace Memorial Church", 1, true},    {"church grace memorial", 1, false},
      {"Memorial Church", 15.0 / 21, false}, {"gra", 3.0 / 21, true},
      {"grace baltimore", 5.0 / 21, true},   {"worship", 0.5, false},
  };
  for (const auto& [typed, coverage, fromStart] : cases) {
    const auto matches = index.find(searchTerms(typed, true));
    ASSERT_EQ(matches.size(), 1U) << typed;
    EXPECT_NEAR(matches.front().coverage, coverage, 1e-6) << typed;
    EXPECT_EQ(matches.front().fromStart, fromStart) << typed;
  }
  EXPECT_TRUE(index.find(searchTerms("Baltimore", true)).empty()) << "the region alone is no match";
}

}  // namespace
}  // namespace quorvelkit::sandbox
