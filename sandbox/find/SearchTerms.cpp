// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/SearchTerms.h"

#include "sandbox/find/SearchWords.h"

#include <algorithm>

namespace quorvelkit::sandbox {
namespace {

constexpr std::size_t maximumTerms = 16;

struct Abbreviation {
  std::string_view abbreviation;
  std::string_view word;
};

constexpr Abbreviation abbreviations[] = {
    {"st", "street"},       {"st", "saint"},        {"st", "sankt"},      {"ave", "avenue"},
    {"av", "avenue"},       {"av", "avinguda"},     {"avda", "avinguda"}, {"av", "avenida"},
    {"avda", "avenida"},    {"rd", "road"},         {"dr", "drive"},      {"ln", "lane"},
    {"ct", "court"},        {"pl", "place"},        {"pl", "placa"},      {"pl", "plaza"},
    {"sq", "square"},       {"blvd", "boulevard"},  {"bd", "boulevard"},  {"hwy", "highway"},
    {"pkwy", "parkway"},    {"expy", "expressway"}, {"fwy", "freeway"},   {"ter", "terrace"},
    {"cir", "circle"},      {"aly", "alley"},       {"brg", "bridge"},    {"mt", "mount"},
    {"ft", "fort"},         {"ctra", "carretera"},  {"c", "carrer"},      {"c", "calle"},
    {"pg", "passeig"},      {"pg", "paseo"},        {"str", "strasse"},   {"n", "north"},
    {"s", "south"},         {"e", "east"},          {"w", "west"},        {"ne", "northeast"},
    {"nw", "northwest"},    {"se", "southeast"},    {"sw", "southwest"},  {"dr", "doctor"},
    {"univ", "university"}, {"apt", "apartment"},   {"ctr", "center"},    {"center", "centre"},
};

}  // namespace

std::vector<SearchTerm> searchTerms(std::string_view text, bool isIncomplete) {
  std::vector<SearchWord> words = searchWords(text);
  // A space after the last word means that the word is complete.
  if (!text.empty() && text.back() == ' ') isIncomplete = false;
  std::vector<SearchTerm> terms;
  for (std::size_t i = 0; i < std::min(words.size(), maximumTerms); ++i) {
    SearchTerm term;
    const std::string& word = term.spellings.emplace_back(std::move(words[i].text));
    term.isNumber = word.front() >= '0' && word.front() <= '9';
    term.matchesPrefix = !term.isNumber || (isIncomplete && i + 1 == words.size());
    const std::string typed = word;
    for (const auto& [abbreviation, full] : abbreviations) {
      if (abbreviation == typed) term.spellings.emplace_back(full);
      if (full == typed) term.spellings.emplace_back(abbreviation);
    }
    terms.push_back(std::move(term));
  }
  return terms;
}

}  // namespace quorvelkit::sandbox
