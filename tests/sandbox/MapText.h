// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/MapData.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox::test {

/// A map written down for a test: a feature on each line, as "Elm Street: 0,2 -1.5,2; ref=SR 7". It
/// may be without a name. One position makes a node, more of them a way, which is a residential
/// street when no tag says what else. The positions are made of their two numbers by a function;
/// nodes and ways are counted from 1.
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
