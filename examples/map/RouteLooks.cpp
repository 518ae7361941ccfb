// SPDX-License-Identifier: Apache-2.0
#include "RouteLooks.h"

#include <QuorvelMap/MGLMapView.h>

#include <QMargins>

using namespace quorvelkit;

// The markers with their titles stand on the route's ends and need room above and beside them.
std::optional<double> RouteLooks::lineWidthForPolylineAnnotation(MGLMapView& mapView,
                                                                 const MGLPolyline& annotation) {
  hasRoute_ = annotation.pointCount() > 0;
  mapView.setVisibleCoordinates(annotation.coordinates(), QMargins(70, 90, 70, 40));
  return 6;
}

std::optional<QColor> RouteLooks::strokeColorForShapeAnnotation(MGLMapView&, const MGLAnnotation&) {
  return QColor(0x1f, 0x5f, 0xd6);
}

std::optional<double> RouteLooks::alphaForShapeAnnotation(MGLMapView&, const MGLAnnotation&) {
  return 0.85;
}
