// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/SearchWords.h"
#include "sandbox/find/StreetLine.h"
#include "sandbox/find/TextIndex.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
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

std::vector<std::string> folded(const std::string& text) {
  std::vector<std::string> words;
  for (const SearchWord& word : searchWords(text)) {
    words.push_back(word.text);
    if (!word.tail.empty()) words.push_back(word.tail);
  }
  return words;
}

/// The reference for TextIndex::find(): a check without an index. `own` are the words of name and
/// detail.
bool matches(const std::vector<std::string>& own, const std::vector<std::string>& region,
             const std::vector<SearchTerm>& terms) {
  const auto isIn = [](const std::vector<std::string>& words, const SearchTerm& term) {
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
      return std::count(term.spellings.begin(), term.spellings.end(), word) > 0 ||
             (term.matchesPrefix && word.starts_with(term.word()));
    });
  };
  bool isOwn = false, isAll = true;
  for (const SearchTerm& term : terms) {
    isOwn = isOwn || isIn(own, term);
    isAll = isAll && (isIn(own, term) || isIn(region, term));
  }
  return isOwn && isAll;
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
  std::vector<std::vector<std::string>> own, regions;
  for (int i = 0; i < 400; ++i) {
    texts.push_back({text(4), text(2), text(2)});
    const auto& [name, detail, region] = texts.back();
    own.push_back(folded(name + ' ' + detail));
    regions.push_back(folded(region));
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
      if (matches(own[number], regions[number], terms)) scanned.insert(number);
    }
    EXPECT_EQ(found, scanned) << typed;
    nonEmpty += found.empty() ? 0 : 1;
  }
  EXPECT_GT(nonEmpty, 300U);
}

/// A street of about 1110 m along the equator, from three ways with different directions and order.
StreetLine streetToTheEast() {
  return StreetLine({{{0, 0.004}, {0, 0.006}}, {{0, 0.004}, {0, 0}}, {{0, 0.01}, {0, 0.006}}});
}

TEST(StreetLineTest, NumbersAreEstimatedWithoutKnownHouses) {
  const StreetLine line = streetToTheEast();
  const double length = line.metersTo({0, 0.02});  // As far from the end as the street is long.
  for (int number = 1; number < static_cast<int>(length / 5); number += 7) {
    const auto position = line.positionOf(number);
    ASSERT_TRUE(position) << number;
    // The position of a house has its number, odd on the left. The left is north or south,
    // depending on the direction in which the ways were joined.
    int same = 0;
    for (const double side : {-0.0001, 0.0001}) {
      const auto back = line.numberAt({side, position->longitude});
      ASSERT_TRUE(back);
      EXPECT_LE(std::abs(*back - number), 1);
      same += *back == number ? 1 : 0;
    }
    EXPECT_EQ(same, number == 1 ? 2 : 1) << number;  // Number 1 is the first on both sides.
  }
  EXPECT_FALSE(line.positionOf(static_cast<int>(length)));
}

TEST(StreetLineTest, InterpolatesOverGapsAndFindsItsMidpoint) {
  StreetLine line({{{0, 0}, {0, 0.002}}, {{0, 0.008}, {0, 0.01}}});
  line.addHouse(1, {0, 0.001});
  line.addHouse(9, {0, 0.009});
  // The interpolated positions are in the gap; the nearest position on the street counts.
  EXPECT_NEAR(line.positionOf(3)->longitude, 0.002, 1e-6);
  EXPECT_NEAR(line.positionOf(7)->longitude, 0.008, 1e-6);
  EXPECT_NEAR(streetToTheEast().midpoint().longitude, 0.005, 1e-6);
  // A street without length has a midpoint too.
  EXPECT_EQ(StreetLine({{{1, 2}, {1, 2}}}).midpoint(), (Coordinate{1, 2}));
}

}  // namespace
}  // namespace quorvelkit::sandbox
