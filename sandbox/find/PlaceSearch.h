// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/find/Gazetteer.h"
#include "sandbox/find/SearchTerms.h"
#include "sandbox/find/TextIndex.h"

#include <QuorvelPlatform/Coordinate.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox {

/// A box in degrees. It crosses the 180th meridian if its west is larger than its east.
struct Extent {
  Coordinate southwest;
  Coordinate northeast;

  bool contains(const Coordinate& position) const;
};

/// Finds places by text. Immutable.
class PlaceSearch {
 public:
  struct Result {
    Place place;
    /// The agreement of the text with the name of the place, 0 to 100.
    double score = 0;
    /// The distance from the position of the search area.
    double meters = 0;
  };
  struct SearchArea {
    /// Results with equal scores are sorted by their distance from this position.
    Coordinate near;
    /// Excludes places outside of it.
    std::optional<Extent> extent;
  };

  explicit PlaceSearch(std::shared_ptr<const Gazetteer> gazetteer);

  /// Returns the places that match a text, the best score first, without those that are much worse
  /// than the best. If no place matches the whole text, ignores words at its end and unknown words,
  /// which lowers the scores. Every result has a whole word in common with the text; numbers count
  /// only if the text has no other words.
  std::vector<Result> candidates(std::string_view text, const SearchArea& area) const;

  /// Returns the places that match an incomplete text: first those whose name is the text, then
  /// those whose name begins with it, then the others. Near places and short names come first in
  /// each group.
  std::vector<Result> suggestions(std::string_view text, const SearchArea& area) const;

 private:
  using Terms = std::vector<SearchTerm>;
  /// Sorted in ascending order.
  using SortKey = std::pair<double, double>;
  using SortKeyFunction = std::function<SortKey(const TextIndex::Match&, double meters)>;

  struct Location {
    Coordinate position;
    Place::Kind kind = Place::Kind::address;
  };

  /// Which of the matches are results.
  struct Filter {
    bool addresses = true;
    /// Only those with TextIndex::Match::sharesWord.
    bool sharesWord = false;

    bool accepts(const TextIndex::Match& match) const { return match.sharesWord || !sharesWord; }
  };

  std::vector<Result> bestResults(const Terms& terms, double fraction, const SearchArea& area,
                                  Filter filter) const;
  std::vector<Result> search(const Terms& terms, double fraction, const SearchArea& area,
                             std::size_t maximumCount, const SortKeyFunction& sortKey,
                             Filter filter) const;
  std::vector<TextIndex::Match> streetsMatching(const Terms& terms, Filter filter) const;
  void addInterpolated(const Terms& terms, double fraction, const SearchArea& area, Filter filter,
                       std::vector<Result>& found) const;

  std::shared_ptr<const Gazetteer> gazetteer_;
  TextIndex index_;
  /// Position and kind of every place, in a compact form for the filter of the matches.
  std::vector<Location> locations_;
};

}  // namespace quorvelkit::sandbox
