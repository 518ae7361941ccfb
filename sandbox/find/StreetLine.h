// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace quorvelkit::sandbox {

/// Joins lines whose ends meet.
std::vector<std::vector<Coordinate>> joinLines(std::vector<std::vector<Coordinate>> lines);

/// The line of a street and the positions of its house numbers.
///
/// Interpolates between the known house numbers. With fewer than two known ones, estimates the
/// numbers from the beginning of the street: one house every ten meters on each side, odd numbers
/// on the left.
class StreetLine {
 public:
  /// Takes the lines of the ways of the street in any order, each with at least two positions.
  explicit StreetLine(std::vector<std::vector<Coordinate>> ways);

  /// Adds a known house number.
  void addHouse(int number, const Coordinate& position);
  bool hasHouse(int number) const;

  /// Returns the position of a house number on the street, or nothing if the number is out of
  /// range.
  std::optional<Coordinate> positionOf(int number) const;
  /// Returns the house number at a position, or nothing if it is outside of the known numbers.
  std::optional<int> numberAt(const Coordinate& position) const;
  /// Returns the position on the street that is nearest to its center.
  Coordinate midpoint() const;
  double metersTo(const Coordinate& position) const;
  /// Calls `call` with both ends of every segment.
  void forEachSegment(const std::function<void(const Coordinate&, const Coordinate&)>& call) const;

 private:
  struct Chain {
    std::vector<Coordinate> line;
    /// The distance from the beginning in meters, for every position of the line.
    std::vector<double> along;

    double length() const { return along.back(); }
  };
  /// The position on the street that is nearest to another position.
  struct LinePosition {
    std::size_t chain = 0;
    /// The distance from the beginning of the chain in meters.
    double along = 0;
    Coordinate position;
    /// The distance from the other position.
    double meters = 0;
    /// Whether the other position is on the left.
    bool onLeft = false;
  };
  struct House {
    int number = 0;
    LinePosition place;
  };

  LinePosition nearest(const Coordinate& position) const;
  Coordinate positionAlong(std::size_t chain, double along) const;
  /// Returns the houses to interpolate between: the known ones of a parity if there are two, or
  /// else all known ones if there are two, or else estimated ones.
  std::vector<House> interpolationHouses(int parity) const;

  /// The ways, joined end to end; the longest chain first.
  std::vector<Chain> chains_;
  std::vector<House> houses_;
};

}  // namespace quorvelkit::sandbox
