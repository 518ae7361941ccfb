// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLMapViewDelegate.h>

/// How this application wants its route: broad, blue, and all of it in view. The screen itself
/// leaves the viewport alone, so the map is moved here, where the route's line first shows up.
class RouteLooks : public quorvelkit::MGLMapViewDelegate {
 public:
  bool hasRoute() const { return hasRoute_; }

  std::optional<double> lineWidthForPolylineAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLPolyline& annotation) override;
  std::optional<QColor> strokeColorForShapeAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLAnnotation& annotation) override;
  std::optional<double> alphaForShapeAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLAnnotation& annotation) override;

 private:
  bool hasRoute_ = false;
};
