// SPDX-License-Identifier: Apache-2.0
#include "Routes.h"

#include <cmath>
#include <cstddef>

using quorvelkit::Coordinate;

namespace {

using Points = std::vector<Coordinate>;

constexpr double pi = 3.14159265358979;

Points circle(std::size_t count, double turns) {
  Points points;
  for (std::size_t i = 0; i < count; ++i) {
    const double angle = 2 * pi * turns * static_cast<double>(i) / static_cast<double>(count - 1);
    points.push_back({47.37 + 0.01 * std::sin(angle), 8.54 + 0.02 * std::cos(angle)});
  }
  return points;
}

Points zigzag() {
  Points points;
  for (int i = 0; i < 12; ++i)
    points.push_back({47.37 + (i % 2 == 0 ? 0 : 0.02), 8.5 + 0.006 * i});
  // The last segment is shorter than the width of the line.
  points.push_back({47.3897, 8.5663});
  return points;
}

Points manyPoints() {
  Points points;
  for (int i = 0; i < 100000; ++i) {
    const double part = i / 99999.0;
    points.push_back({47.3 + 0.1 * std::sin(part * 40) * part, 8.4 + 0.3 * part});
  }
  return points;
}

}  // namespace

std::vector<PicturedRoute> picturedRoutes() {
  const Points town = {{47.370, 8.520}, {47.372, 8.531}, {47.381, 8.533}, {47.379, 8.549}};
  return {
      {"none", {}},
      {"one point", {{47.37, 8.54}}},
      {"two points", {{47.36, 8.52}, {47.38, 8.56}}},
      {"identical ends", circle(60, 1)},
      {"near ends", circle(60, 0.985)},
      {"across the dateline", {{-16.8, 178.9}, {-17.4, 179.7}, {-16.6, -179.6}, {-17.2, -178.9}}},
      {"near a pole", {{84.2, -30}, {84.9, 10}, {84.0, 40}}},
      {"zigzag", zigzag()},
      {"100,000 points", manyPoints()},
      {"one street", {{47.37010, 8.54010}, {47.37030, 8.54060}}},
      {"a whole country", {{47.7, -4.5}, {48.9, 2.4}, {45.8, 4.8}, {43.3, 5.4}, {43.7, 7.3}}},
      {"scale factor 2", town, 2}};
}
