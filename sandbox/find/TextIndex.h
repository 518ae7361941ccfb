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

/// Finds the texts that hold all of some words or beginnings of words, in any order. A search
/// takes time by the number of texts with its rarest word, not by the number of all texts.
/// Immutable.
class TextIndex {
 public:
  struct Text {
    std::string name;
    /// What describes it besides its name: a category, the address of a shop.
    std::string detail;
    /// What many others share with it: its city, its postal code.
    std::string region;
  };

  struct Match {
    std::uint32_t text = 0;
    /// How much of the name's letters the terms account for, 0 to 1. A name of which nothing was
    /// typed, where a detail was, counts as half found.
    float share = 0;
    /// Whether the first term is the name's first word, or begins it.
    bool fromStart = false;
  };

  /// The index of texts number 0 to `count` - 1; the function is asked for each once, in order.
  TextIndex(std::size_t count, const std::function<Text(std::size_t)>& textAt);

  /// The texts that match every term, at least one of them in name or detail; in no order.
  std::vector<Match> find(const std::vector<SearchTerm>& terms) const;
  /// Whether any text matches the term.
  bool knows(const SearchTerm& term) const;

 private:
  enum class Field : std::uint8_t { name, nameTail, detail, region };
  struct Token {
    std::uint32_t word : 30;
    std::uint32_t field : 2;
  };
  /// The words from `first` to before `last` that match a term; `wholeLength` is 0 where these
  /// only begin with it.
  struct WordRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    bool whole = false;
  };
  struct TermWords {
    std::vector<WordRange> ranges;
    std::size_t typedLength = 0;
    std::size_t postings = 0;
  };

  void addTokens(std::string_view text, Field field,
                 const std::function<std::uint32_t(std::string)>& number);
  void sortWords(std::vector<std::string> unsorted);
  void buildPostings();
  std::pair<std::uint32_t, std::uint32_t> wordsBeginningWith(std::string_view beginning) const;
  TermWords wordsOf(const SearchTerm& term) const;
  bool match(std::uint32_t text, const std::vector<TermWords>& terms, Match& result) const;

  /// In bytewise order.
  std::vector<std::string> words_;
  /// All texts' words, one text after the other; firstToken_[i] is where text i begins.
  std::vector<Token> tokens_;
  std::vector<std::uint32_t> firstToken_;
  /// The texts of each word, one word after the other, each text once.
  std::vector<std::uint32_t> postings_;
  std::vector<std::uint32_t> firstPosting_;
};

}  // namespace quorvelkit::sandbox
