// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/Country.h"

#include "sandbox/find/SearchWords.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <unordered_map>

namespace quorvelkit::sandbox {
namespace {

struct State {
  std::string_view abbreviation;
  std::string_view name;
};

constexpr State states[] = {
    {"AL", "Alabama"},        {"AK", "Alaska"},         {"AZ", "Arizona"},
    {"AR", "Arkansas"},       {"CA", "California"},     {"CO", "Colorado"},
    {"CT", "Connecticut"},    {"DE", "Delaware"},       {"DC", "District of Columbia"},
    {"FL", "Florida"},        {"GA", "Georgia"},        {"HI", "Hawaii"},
    {"ID", "Idaho"},          {"IL", "Illinois"},       {"IN", "Indiana"},
    {"IA", "Iowa"},           {"KS", "Kansas"},         {"KY", "Kentucky"},
    {"LA", "Louisiana"},      {"ME", "Maine"},          {"MD", "Maryland"},
    {"MA", "Massachusetts"},  {"MI", "Michigan"},       {"MN", "Minnesota"},
    {"MS", "Mississippi"},    {"MO", "Missouri"},       {"MT", "Montana"},
    {"NE", "Nebraska"},       {"NV", "Nevada"},         {"NH", "New Hampshire"},
    {"NJ", "New Jersey"},     {"NM", "New Mexico"},     {"NY", "New York"},
    {"NC", "North Carolina"}, {"ND", "North Dakota"},   {"OH", "Ohio"},
    {"OK", "Oklahoma"},       {"OR", "Oregon"},         {"PA", "Pennsylvania"},
    {"RI", "Rhode Island"},   {"SC", "South Carolina"}, {"SD", "South Dakota"},
    {"TN", "Tennessee"},      {"TX", "Texas"},          {"UT", "Utah"},
    {"VT", "Vermont"},        {"VA", "Virginia"},       {"WA", "Washington"},
    {"WV", "West Virginia"},  {"WI", "Wisconsin"},      {"WY", "Wyoming"},
};

/// Three-letter codes by folded English name, two-letter code and three-letter code.
std::unordered_map<std::string, std::string> allCountries() {
  std::unordered_map<std::string, std::string> result;
  for (const char* const* code = icu::Locale::getISOCountries(); *code != nullptr; ++code) {
    const icu::Locale country("", *code);
    const std::string code3 = country.getISO3Country();
    if (code3.empty()) continue;
    icu::UnicodeString name;
    country.getDisplayCountry(icu::Locale::getEnglish(), name);
    std::string text;
    result[foldedName(name.toUTF8String(text))] = code3;
    result[foldedName(*code)] = code3;
    result[foldedName(code3)] = code3;
  }
  return result;
}

}  // namespace

std::string countryCode(std::string_view nameOrCode) {
  static const auto& countries = *new auto(allCountries());
  const auto found = countries.find(foldedName(nameOrCode));
  if (found != countries.end()) return found->second;
  // Maps of fictional countries use unassigned codes.
  const bool isCode = (nameOrCode.size() == 2 || nameOrCode.size() == 3) &&
                      std::all_of(nameOrCode.begin(), nameOrCode.end(),
                                  [](char c) { return c >= 'A' && c <= 'Z'; });
  return isCode ? std::string(nameOrCode) : std::string();
}

std::string_view stateName(std::string_view abbreviation) {
  const auto* const found =
      std::find_if(std::begin(states), std::end(states),
                   [&](const State& state) { return state.abbreviation == abbreviation; });
  return found == std::end(states) ? std::string_view() : found->name;
}

std::string_view stateAbbreviation(std::string_view name) {
  const auto* const found = std::find_if(std::begin(states), std::end(states),
                                         [&](const State& state) { return state.name == name; });
  return found == std::end(states) ? std::string_view() : found->abbreviation;
}

std::string addressLine(std::string_view houseNumber, std::string_view street,
                        std::string_view country) {
  // "XQ" is the country of the built-in town.
  constexpr std::array<std::string_view, 9> numberFirst{"",    "USA", "CAN", "GBR", "IRL",
                                                        "AUS", "NZL", "FRA", "XQ"};
  const bool isFirst =
      std::find(numberFirst.begin(), numberFirst.end(), country) != numberFirst.end();
  std::string line(isFirst ? houseNumber : street);
  if (!houseNumber.empty() && !street.empty()) line += ' ';
  return line += isFirst ? street : houseNumber;
}

}  // namespace quorvelkit::sandbox
