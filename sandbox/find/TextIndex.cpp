// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/TextIndex.h"

#include "sandbox/find/SearchWords.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace quorvelkit::sandbox {
namespace {

/// Further words of a text are not searched.
constexpr std::size_t maximumTokens = 64;
constexpr float detailCoverage = 0.5F;

// How well a token matches a term. A whole word adds 2 to the highest rank, and a word that is no
// tail adds 1.
constexpr int regionRank = 0;
constexpr int detailRank = 1;
constexpr int usedNameRank = 2;
constexpr int unusedNameRank = 4;

}  // namespace

TextIndex::TextIndex(std::size_t count, const std::function<Text(std::size_t)>& textAt) {
  std::unordered_map<std::string, std::uint32_t> numbers;
  std::vector<std::string> words;
  const auto number = [&](std::string word) {
    const auto [known, isNew] =
        numbers.try_emplace(std::move(word), static_cast<std::uint32_t>(words.size()));
    if (isNew) words.push_back(known->first);
    return known->second;
  };
  firstToken_.reserve(count + 1);
  for (std::size_t i = 0; i < count; ++i) {
    firstToken_.push_back(static_cast<std::uint32_t>(tokens_.size()));
    const Text text = textAt(i);
    addTokens(text.name, Field::name, number);
    addTokens(text.detail, Field::detail, number);
    addTokens(text.region, Field::region, number);
  }
  firstToken_.push_back(static_cast<std::uint32_t>(tokens_.size()));
  sortWords(std::move(words));
  buildPostings();
}

void TextIndex::addTokens(std::string_view text, Field field,
                          const std::function<std::uint32_t(std::string)>& number) {
  const auto add = [&](std::string word, Field tokenField) {
    if (tokens_.size() - firstToken_.back() == maximumTokens) return;
    tokens_.push_back(
        {number(std::move(word)) & 0x3FFFFFFFU, static_cast<std::uint32_t>(tokenField) & 3U});
  };
  for (SearchWord& word : searchWords(text)) {
    add(std::move(word.text), field);
    if (!word.tail.empty()) {
      add(std::move(word.tail), field == Field::name ? Field::nameTail : field);
    }
  }
}

void TextIndex::sortWords(std::vector<std::string> unsorted) {
  std::vector<std::uint32_t> order(unsorted.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(),
            [&](std::uint32_t a, std::uint32_t b) { return unsorted[a] < unsorted[b]; });
  std::vector<std::uint32_t> place(unsorted.size());
  words_.reserve(unsorted.size());
  for (const std::uint32_t old : order) {
    place[old] = static_cast<std::uint32_t>(words_.size());
    words_.push_back(std::move(unsorted[old]));
  }
  for (Token& token : tokens_) {
    token.word = place[token.word] & 0x3FFFFFFFU;
  }
}

void TextIndex::buildPostings() {
  // The first pass counts the postings of each word, the second pass stores them. A text counts
  // once per word.
  std::vector<std::uint32_t> lastText(words_.size());
  const auto forEachPosting = [&](const auto& call) {
    std::fill(lastText.begin(), lastText.end(), UINT32_MAX);
    for (std::uint32_t text = 0; text + 1 < firstToken_.size(); ++text) {
      for (std::uint32_t i = firstToken_[text]; i < firstToken_[text + 1]; ++i) {
        const std::uint32_t word = tokens_[i].word;
        if (std::exchange(lastText[word], text) != text) call(word, text);
      }
    }
  };
  firstPosting_.assign(words_.size() + 1, 0);
  forEachPosting([&](std::uint32_t word, std::uint32_t) { ++firstPosting_[word + 1]; });
  std::partial_sum(firstPosting_.begin(), firstPosting_.end(), firstPosting_.begin());
  postings_.resize(firstPosting_.back());
  std::vector<std::uint32_t> next(firstPosting_.begin(), firstPosting_.end() - 1);
  forEachPosting([&](std::uint32_t word, std::uint32_t text) { postings_[next[word]++] = text; });
}

std::pair<std::uint32_t, std::uint32_t> TextIndex::wordsWithPrefix(
    std::string_view beginning) const {
  const auto cut = [&](std::string_view word) { return word.substr(0, beginning.size()); };
  const auto first =
      std::lower_bound(words_.begin(), words_.end(), beginning,
                       [&](const std::string& word, std::string_view b) { return cut(word) < b; });
  const auto last =
      std::upper_bound(first, words_.end(), beginning,
                       [&](std::string_view b, const std::string& word) { return b < cut(word); });
  return {static_cast<std::uint32_t>(first - words_.begin()),
          static_cast<std::uint32_t>(last - words_.begin())};
}

TextIndex::TermWords TextIndex::wordsOf(const SearchTerm& term) const {
  TermWords result;
  result.typedLength = term.word().size();
  result.isNumber = term.isNumber;
  const auto add = [&](std::uint32_t first, std::uint32_t last, bool whole) {
    if (first >= last) return;
    result.ranges.push_back({first, last, whole});
    result.postings += firstPosting_[last] - firstPosting_[first];
  };
  for (const std::string& spelling : term.spellings) {
    // Bytewise order: a word comes before all others that begin with it.
    const auto [first, last] = wordsWithPrefix(spelling);
    const bool isWord = first < last && words_[first] == spelling;
    if (isWord) add(first, first + 1, true);
    const bool typed = &spelling == &term.spellings.front();
    if (typed && term.matchesPrefix) add(first + (isWord ? 1 : 0), last, false);
  }
  return result;
}

bool TextIndex::hasMatch(const SearchTerm& term) const { return wordsOf(term).postings > 0; }

std::vector<TextIndex::Match> TextIndex::find(const std::vector<SearchTerm>& terms) const {
  std::vector<Match> matches;
  std::vector<TermWords> words;
  words.reserve(terms.size());
  for (const SearchTerm& term : terms)
    words.push_back(wordsOf(term));
  const auto rarest = std::min_element(
      words.begin(), words.end(),
      [](const TermWords& a, const TermWords& b) { return a.postings < b.postings; });
  if (rarest == words.end() || rarest->postings == 0) return matches;

  std::vector<bool> seen(firstToken_.size());
  for (const WordRange& range : rarest->ranges) {
    for (std::uint32_t i = firstPosting_[range.first]; i < firstPosting_[range.last]; ++i) {
      const std::uint32_t text = postings_[i];
      if (seen[text]) continue;
      seen[text] = true;
      Match found;
      if (match(text, words, found)) matches.push_back(found);
    }
  }
  return matches;
}

TextIndex::TokenMatch TextIndex::bestToken(std::uint32_t text, const TermWords& term,
                                           std::uint64_t usedTokens) const {
  const std::uint32_t begin = firstToken_[text];
  TokenMatch best;
  for (std::uint32_t i = begin; i < firstToken_[text + 1]; ++i) {
    const std::uint32_t word = tokens_[i].word;
    const auto field = static_cast<Field>(tokens_[i].field);
    // The tail of a word stands for the whole word, which is the token before it.
    const std::uint32_t token = field == Field::nameTail ? i - 1 : i;
    const bool inName = field == Field::name || field == Field::nameTail;
    const bool isUnused = (usedTokens >> (token - begin) & 1) == 0;
    for (const WordRange& range : term.ranges) {
      if (word < range.first || word >= range.last) continue;
      int rank = regionRank;
      if (inName && isUnused) {
        rank = unusedNameRank + (range.whole ? 2 : 0) + (field == Field::name ? 1 : 0);
      } else if (inName) {
        rank = usedNameRank;
      } else if (field == Field::detail) {
        rank = detailRank;
      }
      if (range.whole && field != Field::region) best.sharesWord = true;
      if (rank > best.rank) best = {rank, token, range.whole, best.sharesWord};
    }
  }
  return best;
}

bool TextIndex::match(std::uint32_t text, const std::vector<TermWords>& terms,
                      Match& result) const {
  const std::uint32_t begin = firstToken_[text];
  std::uint64_t usedTokens = 0;  // One bit for each token of the name that a term has matched.
  std::size_t matchedLetters = 0;
  std::size_t matchedWords = 0;
  bool inDetail = false;
  for (std::size_t t = 0; t < terms.size(); ++t) {
    const TokenMatch best = bestToken(text, terms[t], usedTokens);
    if (best.rank < 0) return false;
    result.sharesWord = result.sharesWord || (best.sharesWord && !terms[t].isNumber);
    if (best.rank >= unusedNameRank) {
      usedTokens |= std::uint64_t{1} << (best.token - begin);
      const std::size_t length = words_[tokens_[best.token].word].size();
      matchedLetters += best.whole ? length : std::min(length, terms[t].typedLength);
      ++matchedWords;
      if (t == 0 && best.token == begin) result.fromStart = true;
    }
    inDetail = inDetail || best.rank == detailRank;
  }
  if (matchedWords == 0 && !inDetail) return false;
  result.text = text;
  if (matchedWords == 0) {
    result.coverage = detailCoverage;
    return true;
  }
  std::size_t letters = 0;
  std::size_t nameWords = 0;
  for (std::uint32_t i = begin; i < firstToken_[text + 1]; ++i) {
    if (static_cast<Field>(tokens_[i].field) != Field::name) continue;
    letters += words_[tokens_[i].word].size();
    ++nameWords;
  }
  result.coverage = static_cast<float>(matchedLetters + matchedWords - 1) /
                    static_cast<float>(letters + nameWords - 1);
  return true;
}

}  // namespace quorvelkit::sandbox
