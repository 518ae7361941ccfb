// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Theme.h"

#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

#include <memory>

/// How this application draws a route: a broad line with a dark rim, and a ring at the chosen turn.
class RouteLooks : public quorvelkit::MGLMapViewDelegate {
 public:
  explicit RouteLooks(Theme theme) : theme_(std::move(theme)) {}

  /// The line below a route's line that forms its rim.
  std::shared_ptr<quorvelkit::MGLPolyline> makeRim(const quorvelkit::MGLPolyline& line);
  /// The marker of a turn. There is one at a time.
  std::shared_ptr<quorvelkit::MGLPointAnnotation> makeTurn(quorvelkit::Coordinate place);

  std::optional<quorvelkit::MGLAnnotationImage> imageForAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLAnnotation& annotation) override;
  std::optional<double> lineWidthForPolylineAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLPolyline& annotation) override;
  std::optional<QColor> strokeColorForShapeAnnotation(
      quorvelkit::MGLMapView& mapView, const quorvelkit::MGLAnnotation& annotation) override;

 private:
  const Theme theme_;
  std::shared_ptr<quorvelkit::MGLPolyline> rim_;
  std::shared_ptr<quorvelkit::MGLPointAnnotation> turn_;
};
