// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Theme.h"

#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

#include <memory>

/// The appearance of a route in this application: a wide line with a dark outline, and a ring at
/// the selected turn.
class RouteDelegate : public quorvelkit::MGLMapViewDelegate {
 public:
  explicit RouteDelegate(Theme theme) : theme_(std::move(theme)) {}

  /// Returns a wider line that forms the outline. Add it before the line of the route.
  std::shared_ptr<quorvelkit::MGLPolyline> makeOutline(const quorvelkit::MGLPolyline& line);
  /// Returns a new marker for the selected turn. Only the last one gets the ring image.
  std::shared_ptr<quorvelkit::MGLPointAnnotation> makeTurnMarker(quorvelkit::Coordinate coordinate);

  std::optional<quorvelkit::MGLAnnotationImage> imageForAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLAnnotation& annotation) override;
  std::optional<double> lineWidthForPolylineAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLPolyline& annotation) override;
  std::optional<QColor> strokeColorForShapeAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLAnnotation& annotation) override;

 private:
  const Theme theme_;
  std::shared_ptr<quorvelkit::MGLPolyline> outline_;
  std::shared_ptr<quorvelkit::MGLPointAnnotation> turnMarker_;
};
