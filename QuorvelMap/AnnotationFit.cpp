// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/AnnotationFit_p.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

#include <algorithm>
#include <vector>

namespace quorvelkit {

namespace {

// Space for markers and labels. Units: device-independent pixels.
constexpr QMargins labelMargins(70, 90, 70, 40);
// From the coordinate of a marker to a control: half a pin and a gap, or the cap of a wide line.
constexpr int controlDistance = 16;

QMargins marginsFor(const QSize& view, const QMargins& controls) {
  const auto limited = [](int space, int control, int limit) {
    return std::min(std::max(space, control + controlDistance), limit);
  };
  return {limited(labelMargins.left(), controls.left(), view.width() / 4),
          limited(labelMargins.top(), controls.top(), view.height() / 3),
          limited(labelMargins.right(), controls.right(), view.width() / 3),
          limited(labelMargins.bottom(), controls.bottom(), view.height() / 3)};
}

}  // namespace

std::optional<MapCamera> cameraFittingAnnotations(const MGLMapView::Annotations& annotations,
                                                  const QSize& view, const QMargins& controls) {
  std::vector<Coordinate> lines;
  std::vector<Coordinate> points;
  for (const auto& annotation : annotations) {
    if (const auto* line = dynamic_cast<const MGLPolyline*>(annotation.get())) {
      lines.insert(lines.end(), line->coordinates().begin(), line->coordinates().end());
    } else if (const auto* point = dynamic_cast<const MGLPointAnnotation*>(annotation.get())) {
      points.push_back(point->coordinate());
    }
  }
  return cameraFitting(lines.empty() ? points : lines, view, marginsFor(view, controls));
}

}  // namespace quorvelkit
