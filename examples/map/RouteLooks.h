// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPolyline.h>

#include <memory>

/// How this application wants its route: broad, blue with a dark rim, and all of it in view. The
/// screen itself leaves the viewport alone, so the map is moved here, where the route's line first
/// shows up.
class RouteLooks : public quorvelkit::MGLMapViewDelegate {
 public:
  bool hasRoute() const { return hasRoute_; }

  std::optional<double> lineWidthForPolylineAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLPolyline& annotation) override;
  std::optional<QColor> strokeColorForShapeAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLAnnotation& annotation) override;

 private:
  std::shared_ptr<quorvelkit::MGLPolyline> casing_;
  bool hasRoute_ = false;
};
