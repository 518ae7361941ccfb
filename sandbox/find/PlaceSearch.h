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

/// A box of degrees. It crosses the 180th meridian where its west is east of its east.
struct Extent {
  Coordinate southwest;
  Coordinate northeast;

  bool contains(const Coordinate& position) const;
};

/// Finds places by what somebody types. Immutable.
class PlaceSearch {
 public:
  struct Found {
    Place place;
    /// How much of the text and of the place's name agree, 0 to 100.
    double score = 0;
    double meters = 0;
  };
  struct Surroundings {
    /// Of equal matches the nearest to this position come first.
    Coordinate near;
    /// What lies outside is not found.
    std::optional<Extent> extent;
  };

  explicit PlaceSearch(std::shared_ptr<const Gazetteer> gazetteer);

  /// The places that a text names, the best score first; those that are much worse than the best
  /// are left out. Where nothing matches the whole text, words at its end and words that no place
  /// has are passed over, at the cost of score.
  std::vector<Found> candidates(std::string_view text, const Surroundings& where) const;

  /// The places that a text may become which is still being typed: first those whose name it is,
  /// then those whose name begins like it, then the rest; within each what is near and has a
  /// short name first.
  std::vector<Found> suggestions(std::string_view text, const Surroundings& where) const;

 private:
  using Terms = std::vector<SearchTerm>;
  /// The least comes first.
  using Order = std::pair<double, double>;
  using OrderOf = std::function<Order(const TextIndex::Match&, double meters)>;

  struct Spot {
    Coordinate position;
    Place::Kind kind = Place::Kind::address;
  };

  std::vector<Found> attempt(const Terms& terms, double share, const Surroundings& where,
                             bool withAddresses) const;
  std::vector<Found> search(const Terms& terms, double share, const Surroundings& where,
                            std::size_t most, const OrderOf& order, bool withAddresses) const;
  std::vector<TextIndex::Match> streetsMatching(const Terms& terms) const;
  void addInterpolated(const Terms& terms, double share, const Surroundings& where,
                       std::vector<Found>& found) const;

  std::shared_ptr<const Gazetteer> gazetteer_;
  TextIndex index_;
  /// Of every place, apart from its texts: what a search looks at for each match.
  std::vector<Spot> spots_;
};

}  // namespace quorvelkit::sandbox
