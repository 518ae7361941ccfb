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

constexpr std::size_t mostCandidates = 10;
constexpr std::size_t mostSuggestions = 5;
/// Several places may have the same label, of which one is suggested.
constexpr std::size_t mostBeforeMerging = 50;
constexpr std::size_t mostStreetsInterpolated = 3;
/// Between places as near as this the name decides.
constexpr double metersOfNoMatter = 100;
/// Candidates with less than this share of the best score are left out.
constexpr double leastShareOfBest = 0.75;
/// A house that is known is a better answer than one that must be there somewhere.
constexpr double trustInInterpolation = 0.9;

TextIndex::Text textOf(const Place& place) {
  // The address of a shop is a place of its own: it only helps to tell shops apart.
  TextIndex::Text text{place.name, place.otherNames, place.address + ' '};
  for (const std::string& category : place.categories)
    text.detail += ' ' + category;
  const Locality& in = place.locality;
  for (const std::string* part : {&in.city, &in.region, &in.postal, &in.country}) {
    text.region += *part + ' ';
  }
  text.region += abbreviationOfState(in.region);
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

double shareOf(const std::vector<SearchTerm>& part, const std::vector<SearchTerm>& whole) {
  return static_cast<double>(letters(part)) / static_cast<double>(letters(whole));
}

void sortByScore(std::vector<PlaceSearch::Found>& found) {
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    return std::tie(b.score, a.meters, a.place.key) < std::tie(a.score, b.meters, b.place.key);
  });
}

bool isWithin(const Coordinate& position, const PlaceSearch::Surroundings& where) {
  return !where.extent || where.extent->contains(position);
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
  spots_.reserve(gazetteer_->places().size());
  for (const Place& place : gazetteer_->places())
    spots_.push_back({place.position, place.kind});
}

std::vector<PlaceSearch::Found> PlaceSearch::search(const Terms& terms, double share,
                                                    const Surroundings& where, std::size_t most,
                                                    const OrderOf& order,
                                                    bool withAddresses) const {
  struct Ranked {
    Order order;
    double meters;
    std::uint32_t place;
    float share;
  };
  std::vector<Ranked> ranked;
  for (const TextIndex::Match& match : index_.find(terms)) {
    const auto& [position, kind] = spots_[match.text];
    if (!isWithin(position, where)) continue;
    if (kind == Place::Kind::address && !withAddresses) continue;
    const double meters = distanceInMeters(position, where.near);
    ranked.push_back({order(match, meters), meters, match.text, match.share});
  }
  const auto kept = static_cast<std::ptrdiff_t>(std::min(most, ranked.size()));
  std::partial_sort(
      ranked.begin(), ranked.begin() + kept, ranked.end(), [](const Ranked& a, const Ranked& b) {
        return std::tie(a.order, a.meters, a.place) < std::tie(b.order, b.meters, b.place);
      });
  std::vector<Found> found;
  for (auto i = ranked.begin(); i != ranked.begin() + kept; ++i) {
    found.push_back({gazetteer_->places()[i->place], 100 * share * i->share, i->meters});
  }
  return found;
}

std::vector<TextIndex::Match> PlaceSearch::streetsMatching(const Terms& terms) const {
  auto matches = index_.find(terms);
  std::erase_if(matches, [&](const TextIndex::Match& match) {
    return spots_[match.text].kind != Place::Kind::street;
  });
  return matches;
}

void PlaceSearch::addInterpolated(const Terms& terms, double share, const Surroundings& where,
                                  std::vector<Found>& found) const {
  for (std::size_t i = 0; i < terms.size(); ++i) {
    const auto number = houseNumber(terms[i]);
    if (!number) continue;
    Terms street = terms;
    street.erase(street.begin() + static_cast<std::ptrdiff_t>(i));
    auto matches = streetsMatching(street);
    if (matches.empty()) {  // A street has no postal code of its own.
      std::erase_if(street, [](const SearchTerm& term) { return houseNumber(term).has_value(); });
      matches = streetsMatching(street);
    }
    const auto metersTo = [&](const TextIndex::Match& match) {
      return distanceInMeters(spots_[match.text].position, where.near);
    };
    std::sort(matches.begin(), matches.end(), [&](const auto& a, const auto& b) {
      return a.share != b.share ? a.share > b.share : metersTo(a) < metersTo(b);
    });
    matches.resize(std::min(matches.size(), mostStreetsInterpolated));
    for (const TextIndex::Match& match : matches) {
      const std::uint32_t on = gazetteer_->places()[match.text].street;
      auto place = gazetteer_->interpolatedAddress(on, *number);
      if (!place || !isWithin(place->position, where)) continue;
      const double meters = distanceInMeters(place->position, where.near);
      found.push_back(
          {*std::move(place), 100 * share * trustInInterpolation * match.share, meters});
    }
  }
}

std::vector<PlaceSearch::Found> PlaceSearch::attempt(const Terms& terms, double share,
                                                     const Surroundings& where,
                                                     bool withAddresses) const {
  auto found = search(
      terms, share, where, mostCandidates,
      [](const TextIndex::Match& match, double meters) {
        return Order{-match.share, meters};
      },
      withAddresses);
  if (withAddresses) addInterpolated(terms, share, where, found);
  sortByScore(found);
  if (found.size() > mostCandidates) found.resize(mostCandidates);
  if (!found.empty()) {
    const double least = leastShareOfBest * found.front().score;
    std::erase_if(found, [&](const Found& one) { return one.score < least; });
  }
  return found;
}

std::vector<PlaceSearch::Found> PlaceSearch::candidates(std::string_view text,
                                                        const Surroundings& where) const {
  const Terms all = searchTerms(text, false);
  if (all.empty()) return {};
  // A house number may be right although the map does not have it.
  Terms terms = all;
  std::erase_if(terms,
                [&](const SearchTerm& term) { return !houseNumber(term) && !index_.knows(term); });
  auto found = attempt(terms, shareOf(terms, all), where, true);
  if (!found.empty()) return found;
  // Another house number is no answer; its street is.
  std::erase_if(terms, [](const SearchTerm& term) { return houseNumber(term).has_value(); });
  while (!terms.empty()) {
    found = attempt(terms, shareOf(terms, all), where, terms.size() == all.size());
    if (!found.empty()) return found;
    terms.pop_back();
  }
  return {};
}

std::vector<PlaceSearch::Found> PlaceSearch::suggestions(std::string_view text,
                                                         const Surroundings& where) const {
  const Terms terms = searchTerms(text, true);
  if (terms.empty()) return {};
  auto found = search(
      terms, 1, where, mostBeforeMerging,
      [](const TextIndex::Match& match, double meters) {
        const int group = match.share == 1 ? 0 : match.fromStart ? 1 : 2;
        return Order{group, (meters + metersOfNoMatter) / match.share};
      },
      true);
  if (found.size() < mostSuggestions) addInterpolated(terms, 1, where, found);
  std::unordered_set<std::string> labels;
  std::erase_if(found, [&](const Found& one) { return !labels.insert(one.place.label()).second; });
  if (found.size() > mostSuggestions) found.resize(mostSuggestions);
  return found;
}

}  // namespace quorvelkit::sandbox
