// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MapCanvas_p.h>
#include <QuorvelMap/MarkerLayer_p.h>

#include <optional>

namespace quorvelkit {

class MGLAnnotation;
class MGLMapView;

/// The appearance of an annotation at the time when it was added: a line or a marker. Both are
/// absent for other kinds of annotations.
struct AnnotationAppearance {
  std::optional<DrawnLine> line;
  std::optional<DrawnMarker> marker;
};

/// Asks the delegate of the view. Returns nothing if the view was destroyed in a call of the
/// delegate.
std::optional<AnnotationAppearance> appearanceOf(MGLMapView& view, const MGLAnnotation& annotation);

}  // namespace quorvelkit
