// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/StreetLine.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quorvelkit::sandbox {
namespace {

/// A street of about 1110 m along the equator, from three ways with different directions and order.
StreetLine streetToTheEast() {
  return StreetLine({{{0, 0.004}, {0, 0.006}}, {{0, 0.004}, {0, 0}}, {{0, 0.01}, {0, 0.006}}});
}

TEST(StreetLineTest, NumbersBetweenKnownHousesAreInterpolated) {
  StreetLine line = streetToTheEast();
  // Odd numbers from 1 to 101 on the left (north), even numbers from 50 to 90 on the right.
  line.addHouse(1, {0.0002, 0});
  line.addHouse(101, {0.0002, 0.01});
  line.addHouse(50, {-0.0002, 0.002});
  line.addHouse(90, {-0.0002, 0.006});
  // NaN: there is no such house.
  const std::pair<int, double> positions[] = {{1, 0},      {51, 0.005}, {26, NAN}, {60, 0.003},
                                              {90, 0.006}, {92, NAN},   {103, NAN}};
  for (const auto& [number, longitude] : positions) {
    const auto position = line.positionOf(number);
    ASSERT_EQ(position.has_value(), !std::isnan(longitude)) << number;
    if (!position) continue;
    EXPECT_NEAR(position->longitude, longitude, 1e-6) << number;
  }
  // 0: there is no number.
  const std::pair<Coordinate, int> numbers[] = {{{0.0001, 0.005}, 51},  {{0.0001, 0.00995}, 101},
                                                {{-0.0001, 0.003}, 60}, {{-0.0001, 0.00545}, 84},
                                                {{-0.0001, 0.008}, 0},  {{-0.0001, 0.001}, 0}};
  for (const auto& [position, number] : numbers)
    EXPECT_EQ(line.numberAt(position).value_or(0), number) << position.longitude;
  EXPECT_TRUE(line.hasHouse(50));
  EXPECT_FALSE(line.hasHouse(60));
}

TEST(StreetLineTest, NumbersAreEstimatedWithoutKnownHouses) {
  const StreetLine line = streetToTheEast();
  const double length = line.metersTo({0, 0.02});  // As far from the end as the street is long.
  for (int number = 1; number < static_cast<int>(length / 5); number += 7) {
    const auto position = line.positionOf(number);
    ASSERT_TRUE(position) << number;
    // The position of a house has its number, odd on the left. The left is north or south,
    // depending on the direction in which the ways were joined.
    int same = 0;
    for (const double side : {-0.0001, 0.0001}) {
      const auto back = line.numberAt({side, position->longitude});
      ASSERT_TRUE(back);
      EXPECT_LE(std::abs(*back - number), 1);
      same += *back == number ? 1 : 0;
    }
    EXPECT_EQ(same, number == 1 ? 2 : 1) << number;  // Number 1 is the first on both sides.
  }
  EXPECT_FALSE(line.positionOf(static_cast<int>(length)));
}

TEST(StreetLineTest, InterpolatesOverGapsAndFindsItsMidpoint) {
  StreetLine line({{{0, 0}, {0, 0.002}}, {{0, 0.008}, {0, 0.01}}});
  line.addHouse(1, {0, 0.001});
  line.addHouse(9, {0, 0.009});
  // The interpolated positions are in the gap; the nearest position on the street counts.
  EXPECT_NEAR(line.positionOf(3)->longitude, 0.002, 1e-6);
  EXPECT_NEAR(line.positionOf(7)->longitude, 0.008, 1e-6);
  EXPECT_NEAR(streetToTheEast().midpoint().longitude, 0.005, 1e-6);
  // A street without length has a midpoint too.
  EXPECT_EQ(StreetLine({{{1, 2}, {1, 2}}}).midpoint(), (Coordinate{1, 2}));
}

}  // namespace
}  // namespace quorvelkit::sandbox
