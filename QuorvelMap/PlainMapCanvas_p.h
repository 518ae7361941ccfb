// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MapCanvas_p.h>

#include <memory>

namespace quorvelkit {

/// Lines on a plain colour, painted by Qt Widgets alone: needs no plugin, no OpenGL.
std::unique_ptr<MapCanvas> makePlainMapCanvas(QWidget* parent, CanvasMovedHandler moved);

}  // namespace quorvelkit
