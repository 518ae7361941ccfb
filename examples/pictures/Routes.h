// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <vector>

struct PicturedRoute {
  const char* name;
  std::vector<quorvelkit::Coordinate> points;
  double scaleFactor = 1;
};

/// Twelve routes that are difficult to draw in different ways.
std::vector<PicturedRoute> picturedRoutes();
