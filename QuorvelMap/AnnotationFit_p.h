// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/WebMercator_p.h>

#include <QMargins>
#include <QSize>
#include <optional>

namespace quorvelkit {

/// Returns the camera that shows all lines, or all markers if there are no lines, with space for
/// markers and their labels and outside the areas that controls cover at the edges of the view.
/// Uses less space in small views. Returns nothing if there are no finite coordinates.
std::optional<MapCamera> cameraFittingAnnotations(const MGLMapView::Annotations& annotations,
                                                  const QSize& view, const QMargins& controls);

}  // namespace quorvelkit
