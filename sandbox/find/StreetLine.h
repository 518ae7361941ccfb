// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace quorvelkit::sandbox {

/// Where a street runs, and which house number stands where along it.
///
/// Between the house numbers that the map knows the others are interpolated. Where it knows fewer
/// than two, houses are counted as a surveyor would number a new street: from its beginning, one
/// house every ten meters on each side, odd numbers on the left.
class StreetLine {
 public:
  /// The lines of the ways that make up the street, in any order, each with two positions or more.
  explicit StreetLine(std::vector<std::vector<Coordinate>> ways);

  /// Tells a known house number and where the house stands.
  void addHouse(int number, const Coordinate& position);
  bool knowsHouse(int number) const;

  /// Where on the street a house number must be; absent beyond the street's last number.
  std::optional<Coordinate> positionOf(int number) const;
  /// The house number next to a position; absent beyond the known ones.
  std::optional<int> numberAt(const Coordinate& position) const;
  /// A position on the street, near the middle of all its parts.
  Coordinate middle() const;
  double metersTo(const Coordinate& position) const;
  /// Calls with both ends of every straight piece.
  void forEachPiece(const std::function<void(const Coordinate&, const Coordinate&)>& call) const;

 private:
  struct Chain {
    std::vector<Coordinate> line;
    /// Meters from the beginning, for every position of the line.
    std::vector<double> along;

    double length() const { return along.back(); }
  };
  struct Place {
    std::size_t chain = 0;
    /// Meters along the chain.
    double along = 0;
    Coordinate position;
    double meters = 0;
    bool onLeft = false;
  };
  struct House {
    int number = 0;
    Place place;
  };

  Place nearest(const Coordinate& position) const;
  Coordinate positionAlong(std::size_t chain, double along) const;
  /// The known houses with the number's parity where there are two, otherwise all; counted ones
  /// where hardly any are known.
  std::vector<House> houses(int parity) const;

  /// Ways joined end to end, the longest first.
  std::vector<Chain> chains_;
  std::vector<House> known_;
};

}  // namespace quorvelkit::sandbox
