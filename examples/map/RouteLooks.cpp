// SPDX-License-Identifier: Apache-2.0
#include "RouteLooks.h"

#include <QuorvelMap/MGLMapView.h>

#include <QMargins>
#include <memory>

using namespace quorvelkit;

namespace {

constexpr double lineWidth = 5;
constexpr double casingWidth = 9;

}  // namespace

// The line is asked about first of all its looks, and once: here it is laid on a darker, broader
// one and brought into view. The markers with their titles stand on its ends and need room above
// and beside them.
std::optional<double> RouteLooks::lineWidthForPolylineAnnotation(MGLMapView& mapView,
                                                                 const MGLPolyline& annotation) {
  if (&annotation == casing_.get()) return casingWidth;
  hasRoute_ = annotation.pointCount() > 0;
  casing_ = std::make_shared<MGLPolyline>(annotation.coordinates());
  mapView.addAnnotations({casing_});
  mapView.setVisibleCoordinates(annotation.coordinates(), QMargins(70, 90, 70, 40));
  return lineWidth;
}

std::optional<QColor> RouteLooks::strokeColorForShapeAnnotation(MGLMapView&,
                                                                const MGLAnnotation& annotation) {
  return &annotation == casing_.get() ? QColor(0x12, 0x3f, 0x9c) : QColor(0x3d, 0x86, 0xf5);
}
