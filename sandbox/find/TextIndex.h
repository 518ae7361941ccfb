// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/find/SearchTerms.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox {

/// An index that finds the texts that contain all of several words or word prefixes, in any order.
/// The time of a search depends on the number of texts with its rarest word. Immutable.
class TextIndex {
 public:
  struct Text {
    std::string name;
    /// Additional words, such as a category or the address of a shop.
    std::string detail;
    /// Words that many texts have in common, such as city and postal code.
    std::string region;
  };

  struct Match {
    std::uint32_t text = 0;
    /// The fraction of the letters of the name that the terms match, 0 to 1; 0.5 if they only match
    /// the detail.
    float coverage = 0;
    /// Whether the first term matches the first word of the name.
    bool fromStart = false;
    /// Whether a term that is no number is a whole word of name or detail.
    bool sharesWord = false;
  };

  /// Indexes the texts 0 to `count` - 1. Calls `textAt` once for each, in order.
  TextIndex(std::size_t count, const std::function<Text(std::size_t)>& textAt);

  /// Returns the texts that match every term, and at least one term in name or detail. Unordered.
  std::vector<Match> find(const std::vector<SearchTerm>& terms) const;
  /// Whether any text matches the term.
  bool hasMatch(const SearchTerm& term) const;

 private:
  enum class Field : std::uint8_t { name, nameTail, detail, region };
  struct Token {
    std::uint32_t word : 30;
    std::uint32_t field : 2;
  };
  /// The words in [first, last), which match a term. `whole` is false if they only begin with it.
  struct WordRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    bool whole = false;
  };
  struct TermWords {
    std::vector<WordRange> ranges;
    std::size_t typedLength = 0;
    bool isNumber = false;
    std::size_t postings = 0;
  };
  /// The token of a text that matches a term best. Negative rank: none matches.
  struct TokenMatch {
    int rank = -1;
    std::uint32_t token = 0;
    bool whole = false;
    /// Whether any token of name or detail is the term.
    bool sharesWord = false;
  };

  void addTokens(std::string_view text, Field field,
                 const std::function<std::uint32_t(std::string)>& number);
  void sortWords(std::vector<std::string> unsorted);
  void buildPostings();
  std::pair<std::uint32_t, std::uint32_t> wordsWithPrefix(std::string_view beginning) const;
  TermWords wordsOf(const SearchTerm& term) const;
  TokenMatch bestToken(std::uint32_t text, const TermWords& term, std::uint64_t usedTokens) const;
  bool match(std::uint32_t text, const std::vector<TermWords>& terms, Match& result) const;

  /// In bytewise order.
  std::vector<std::string> words_;
  /// The words of all texts, back to back; firstToken_[i] is the index where text i begins.
  std::vector<Token> tokens_;
  std::vector<std::uint32_t> firstToken_;
  /// The texts of all words, back to back, each text once per word.
  std::vector<std::uint32_t> postings_;
  std::vector<std::uint32_t> firstPosting_;
};

}  // namespace quorvelkit::sandbox
