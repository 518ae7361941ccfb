// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/StreetLine.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quorvelkit::sandbox {
namespace {

/// About 1110 m to the east along the equator, in three ways of any direction and order.
StreetLine eastward() {
  return StreetLine({{{0, 0.004}, {0, 0.006}}, {{0, 0.004}, {0, 0}}, {{0, 0.01}, {0, 0.006}}});
}

TEST(StreetLineTest, InterpolatesBetweenKnownHouses) {
  StreetLine line = eastward();
  // Odd numbers on the left (north) run from 1 to 101, even ones on the right from 50 to 90.
  line.addHouse(1, {0.0002, 0});
  line.addHouse(101, {0.0002, 0.01});
  line.addHouse(50, {-0.0002, 0.002});
  line.addHouse(90, {-0.0002, 0.006});
  // NaN where there is no such house.
  const std::pair<int, double> positions[] = {{1, 0},      {51, 0.005}, {26, NAN}, {60, 0.003},
                                              {90, 0.006}, {92, NAN},   {103, NAN}};
  for (const auto& [number, longitude] : positions) {
    const auto position = line.positionOf(number);
    ASSERT_EQ(position.has_value(), !std::isnan(longitude)) << number;
    if (!position) continue;
    EXPECT_NEAR(position->longitude, longitude, 1e-6) << number;
  }
  // 0 where no number can be told.
  const std::pair<Coordinate, int> numbers[] = {{{0.0001, 0.005}, 51},  {{0.0001, 0.00995}, 101},
                                                {{-0.0001, 0.003}, 60}, {{-0.0001, 0.00545}, 84},
                                                {{-0.0001, 0.008}, 0},  {{-0.0001, 0.001}, 0}};
  for (const auto& [position, number] : numbers)
    EXPECT_EQ(line.numberAt(position).value_or(0), number) << position.longitude;
  EXPECT_TRUE(line.knowsHouse(50));
  EXPECT_FALSE(line.knowsHouse(60));
}

TEST(StreetLineTest, CountsHousesWhereNoneAreKnown) {
  const StreetLine line = eastward();
  const double length = line.metersTo({0, 0.02});  // As far again beyond its end.
  for (int number = 1; number < static_cast<int>(length / 5); number += 7) {
    const auto position = line.positionOf(number);
    ASSERT_TRUE(position) << number;
    // A house gives its own number back, odd on the left; the left is north or south by the
    // direction in which the ways were joined.
    int same = 0;
    for (const double side : {-0.0001, 0.0001}) {
      const auto back = line.numberAt({side, position->longitude});
      ASSERT_TRUE(back);
      EXPECT_LE(std::abs(*back - number), 1);
      same += *back == number ? 1 : 0;
    }
    EXPECT_EQ(same, number == 1 ? 2 : 1) << number;  // Nothing is before number 1.
  }
  EXPECT_FALSE(line.positionOf(static_cast<int>(length)));
}

TEST(StreetLineTest, CrossesGapsAndFindsItsMiddle) {
  StreetLine line({{{0, 0}, {0, 0.002}}, {{0, 0.008}, {0, 0.01}}});
  line.addHouse(1, {0, 0.001});
  line.addHouse(9, {0, 0.009});
  // Straight between the houses number 5 would float in the gap: it goes to the nearest street.
  EXPECT_NEAR(line.positionOf(3)->longitude, 0.002, 1e-6);
  EXPECT_NEAR(line.positionOf(7)->longitude, 0.008, 1e-6);
  EXPECT_NEAR(eastward().middle().longitude, 0.005, 1e-6);
  // A street of no length has a middle too.
  EXPECT_EQ(StreetLine({{{1, 2}, {1, 2}}}).middle(), (Coordinate{1, 2}));
}

}  // namespace
}  // namespace quorvelkit::sandbox
