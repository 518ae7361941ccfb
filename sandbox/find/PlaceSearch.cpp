// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/PlaceSearch.h"

#include "sandbox/Geometry.h"
#include "sandbox/find/Country.h"

#include <algorithm>
#include <charconv>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace quorvelkit::sandbox {
namespace {

constexpr std::size_t maximumCandidates = 10;
constexpr std::size_t maximumSuggestions = 5;
/// Larger than maximumSuggestions, because places with equal labels are one suggestion.
constexpr std::size_t maximumBeforeMerging = 50;
constexpr std::size_t maximumInterpolatedStreets = 3;
/// Added to distances, so that names decide between near places.
constexpr double distanceOffsetMeters = 100;
/// Candidates below this fraction of the best score are left out.
constexpr double minimumScoreFraction = 0.75;
/// Makes scores of interpolated addresses lower than those of known addresses.
constexpr double interpolatedScoreFactor = 0.9;

TextIndex::Text textOf(const Place& place) {
  // The address of a shop is a detail here, because the address is a place of its own.
  TextIndex::Text text{place.name, place.otherNames, place.address + ' '};
  for (const std::string& category : place.categories)
    text.detail += ' ' + category;
  const Locality& in = place.locality;
  for (const std::string* part : {&in.city, &in.region, &in.postal, &in.country}) {
    text.region += *part + ' ';
  }
  text.region += stateAbbreviation(in.region);
  return text;
}

std::optional<int> houseNumber(const SearchTerm& term) {
  const std::string& word = term.word();
  int number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
  return number;
}

std::size_t letters(const std::vector<SearchTerm>& terms) {
  std::size_t count = 0;
  for (const SearchTerm& term : terms)
    count += term.word().size();
  return count;
}

double fractionOf(const std::vector<SearchTerm>& part, const std::vector<SearchTerm>& whole) {
  return static_cast<double>(letters(part)) / static_cast<double>(letters(whole));
}

void sortByScore(std::vector<PlaceSearch::Result>& found) {
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    return std::tie(b.score, a.meters, a.place.key) < std::tie(a.score, b.meters, b.place.key);
  });
}

bool isInside(const Coordinate& position, const PlaceSearch::SearchArea& area) {
  return !area.extent || area.extent->contains(position);
}

}  // namespace

bool Extent::contains(const Coordinate& position) const {
  const bool crosses = southwest.longitude > northeast.longitude;
  const bool eastOfWest = position.longitude >= southwest.longitude;
  const bool westOfEast = position.longitude <= northeast.longitude;
  return position.latitude >= southwest.latitude && position.latitude <= northeast.latitude &&
         (crosses ? eastOfWest || westOfEast : eastOfWest && westOfEast);
}

PlaceSearch::PlaceSearch(std::shared_ptr<const Gazetteer> gazetteer)
    : gazetteer_(std::move(gazetteer)), index_(gazetteer_->places().size(), [this](std::size_t i) {
        return textOf(gazetteer_->places()[i]);
      }) {
  locations_.reserve(gazetteer_->places().size());
  for (const Place& place : gazetteer_->places())
    locations_.push_back({place.position, place.kind});
}

std::vector<PlaceSearch::Result> PlaceSearch::search(const Terms& terms, double fraction,
                                                     const SearchArea& area,
                                                     std::size_t maximumCount,
                                                     const SortKeyFunction& sortKey,
                                                     Filter filter) const {
  struct Ranked {
    SortKey sortKey;
    double meters;
    std::uint32_t place;
    float coverage;
  };
  std::vector<Ranked> ranked;
  for (const TextIndex::Match& match : index_.find(terms)) {
    const auto& [position, kind] = locations_[match.text];
    if (!isInside(position, area)) continue;
    if (!filter.accepts(match) || (kind == Place::Kind::address && !filter.addresses)) continue;
    const double meters = distanceInMeters(position, area.near);
    ranked.push_back({sortKey(match, meters), meters, match.text, match.coverage});
  }
  const auto kept = static_cast<std::ptrdiff_t>(std::min(maximumCount, ranked.size()));
  std::partial_sort(
      ranked.begin(), ranked.begin() + kept, ranked.end(), [](const Ranked& a, const Ranked& b) {
        return std::tie(a.sortKey, a.meters, a.place) < std::tie(b.sortKey, b.meters, b.place);
      });
  std::vector<Result> found;
  for (auto i = ranked.begin(); i != ranked.begin() + kept; ++i) {
    found.push_back({gazetteer_->places()[i->place], 100 * fraction * i->coverage, i->meters});
  }
  return found;
}

std::vector<TextIndex::Match> PlaceSearch::streetsMatching(const Terms& terms,
                                                           Filter filter) const {
  auto matches = index_.find(terms);
  std::erase_if(matches, [&](const TextIndex::Match& match) {
    return locations_[match.text].kind != Place::Kind::street || !filter.accepts(match);
  });
  return matches;
}

void PlaceSearch::addInterpolated(const Terms& terms, double fraction, const SearchArea& area,
                                  Filter filter, std::vector<Result>& found) const {
  for (std::size_t i = 0; i < terms.size(); ++i) {
    const auto number = houseNumber(terms[i]);
    if (!number) continue;
    Terms street = terms;
    street.erase(street.begin() + static_cast<std::ptrdiff_t>(i));
    auto matches = streetsMatching(street, filter);
    if (matches.empty()) {  // The other numbers can be a postal code, which streets do not have.
      std::erase_if(street, [](const SearchTerm& term) { return houseNumber(term).has_value(); });
      matches = streetsMatching(street, filter);
    }
    const auto metersTo = [&](const TextIndex::Match& match) {
      return distanceInMeters(locations_[match.text].position, area.near);
    };
    std::sort(matches.begin(), matches.end(), [&](const auto& a, const auto& b) {
      return a.coverage != b.coverage ? a.coverage > b.coverage : metersTo(a) < metersTo(b);
    });
    matches.resize(std::min(matches.size(), maximumInterpolatedStreets));
    for (const TextIndex::Match& match : matches) {
      const std::uint32_t on = gazetteer_->places()[match.text].street;
      auto place = gazetteer_->interpolatedAddress(on, *number);
      if (!place || !isInside(place->position, area)) continue;
      const double meters = distanceInMeters(place->position, area.near);
      found.push_back(
          {*std::move(place), 100 * fraction * interpolatedScoreFactor * match.coverage, meters});
    }
  }
}

std::vector<PlaceSearch::Result> PlaceSearch::bestResults(const Terms& terms, double fraction,
                                                          const SearchArea& area,
                                                          Filter filter) const {
  auto found = search(
      terms, fraction, area, maximumCandidates,
      [](const TextIndex::Match& match, double meters) {
        return SortKey{-match.coverage, meters};
      },
      filter);
  if (filter.addresses) addInterpolated(terms, fraction, area, filter, found);
  sortByScore(found);
  if (found.size() > maximumCandidates) found.resize(maximumCandidates);
  if (!found.empty()) {
    const double minimum = minimumScoreFraction * found.front().score;
    std::erase_if(found, [&](const Result& one) { return one.score < minimum; });
  }
  return found;
}

std::vector<PlaceSearch::Result> PlaceSearch::candidates(std::string_view text,
                                                         const SearchArea& area) const {
  const Terms all = searchTerms(text, false);
  if (all.empty()) return {};
  Filter filter;
  filter.sharesWord =
      !std::all_of(all.begin(), all.end(), [](const SearchTerm& term) { return term.isNumber; });
  // Keeps house numbers that the map does not have.
  Terms terms = all;
  std::erase_if(
      terms, [&](const SearchTerm& term) { return !houseNumber(term) && !index_.hasMatch(term); });
  auto found = bestResults(terms, fractionOf(terms, all), area, filter);
  if (!found.empty()) return found;
  // Without the house number, finds the street.
  std::erase_if(terms, [](const SearchTerm& term) { return houseNumber(term).has_value(); });
  while (!terms.empty()) {
    filter.addresses = terms.size() == all.size();
    found = bestResults(terms, fractionOf(terms, all), area, filter);
    if (!found.empty()) return found;
    terms.pop_back();
  }
  return {};
}

std::vector<PlaceSearch::Result> PlaceSearch::suggestions(std::string_view text,
                                                          const SearchArea& area) const {
  const Terms terms = searchTerms(text, true);
  if (terms.empty()) return {};
  auto found = search(terms, 1, area, maximumBeforeMerging,
                      [](const TextIndex::Match& match, double meters) {
                        const int group = match.coverage == 1 ? 0 : match.fromStart ? 1 : 2;
                        return SortKey{group, (meters + distanceOffsetMeters) / match.coverage};
                      },
                      {});
  if (found.size() < maximumSuggestions) addInterpolated(terms, 1, area, {}, found);
  std::unordered_set<std::string> labels;
  std::erase_if(found, [&](const Result& one) { return !labels.insert(one.place.label()).second; });
  if (found.size() > maximumSuggestions) found.resize(maximumSuggestions);
  return found;
}

}  // namespace quorvelkit::sandbox
