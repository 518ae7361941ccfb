// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Coordinate.h>

#include <vector>

struct PicturedRoute {
  const char* name;
  std::vector<quorvelkit::Coordinate> points;
  double scaleFactor = 1;
};

/// Twelve routes, each with a difficulty of its own.
std::vector<PicturedRoute> picturedRoutes();
