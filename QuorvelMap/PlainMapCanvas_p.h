// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MapCanvas_p.h>

#include <memory>

namespace quorvelkit {

/// Makes a canvas that paints lines on a plain background with Qt Widgets. Needs no plugin and no
/// OpenGL.
std::unique_ptr<MapCanvas> makePlainMapCanvas(QWidget* parent, CameraChangedHandler cameraChanged);

}  // namespace quorvelkit
