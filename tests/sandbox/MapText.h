// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox::test {

/// Makes a map from a text with one feature per line: name (can be empty), positions, tags, such as
/// "Elm Street: 0,2 -1.5,2; ref=SR 7". A feature with one position is a node, with more a way. A
/// way without a highway tag is a residential street. `position` converts the two numbers of a
/// position. The ids of nodes and ways count from 1.
inline MapData mapFromText(const std::string& text, Coordinate (*position)(double, double)) {
  MapData map;
  std::istringstream lines(text);
  for (std::string name, rest; std::getline(lines >> std::ws, name, ':');) {
    std::getline(lines, rest);
    std::istringstream parts(rest);
    std::string places, key, value;
    std::getline(parts, places, ';');
    std::vector<Tags::Pair> tags;
    if (!name.empty()) tags.emplace_back("name", name);
    while (std::getline(std::getline(parts >> std::ws, key, '='), value, ';'))
      tags.emplace_back(key, value);
    std::vector<Coordinate> line;
    std::istringstream coordinates(places);
    double first = 0, second = 0;
    for (char comma = 0; coordinates >> first >> comma >> second;)
      line.push_back(position(first, second));
    if (line.size() > 1) {
      tags.emplace_back("highway", "residential");
      map.ways.push_back({std::ssize(map.ways) + 1, Tags(tags), line});
    } else {
      map.nodes.push_back({std::ssize(map.nodes) + 1, line.at(0), Tags(tags)});
    }
  }
  return map;
}

}  // namespace quorvelkit::sandbox::test
