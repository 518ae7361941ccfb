// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MapCanvas_p.h>

#include <memory>

namespace quorvelkit {

/// Lines and markers on a plain colour, painted by Qt Widgets alone: needs no plugin, no OpenGL.
std::unique_ptr<MapCanvas> makePlainMapCanvas(QWidget* parent);

}  // namespace quorvelkit
