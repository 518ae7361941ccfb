// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLAnnotation.h>
#include <QuorvelMap/MGLAnnotationImage.h>
#include <QuorvelMap/MGLPolyline.h>
#include <QuorvelPlatform/Export.h>

#include <QColor>
#include <optional>

namespace quorvelkit {

class MGLMapView;

/// Decides the appearance of annotations on a map view. Every function is optional: the base class
/// returns an empty value, and the map view then uses its default.
///
/// The map view calls the functions on the GUI thread when an annotation is added, and stores the
/// results: width, color and alpha for a line, in this order, or the image for a point. Annotations
/// that the delegate adds inside such a call are drawn below the annotation of the call. The
/// delegate may destroy the map view inside a call; then its result is ignored.
class QUORVELKIT_EXPORT MGLMapViewDelegate {
 public:
  virtual ~MGLMapViewDelegate();

  /// The image of a marker. Default: the standard pin.
  virtual std::optional<MGLAnnotationImage> imageForAnnotation(MGLMapView& mapView,
                                                               const MGLAnnotation& annotation);
  /// In device-independent pixels. A line with a width of 0 or less is not drawn. Default: 3.
  virtual std::optional<double> lineWidthForPolylineAnnotation(MGLMapView& mapView,
                                                               const MGLPolyline& annotation);
  /// Default: MGLMapView::tintColor().
  virtual std::optional<QColor> strokeColorForShapeAnnotation(MGLMapView& mapView,
                                                              const MGLAnnotation& annotation);
  /// From 0 (invisible) to 1. Multiplied by the alpha of the color. Default: 1.
  virtual std::optional<double> alphaForShapeAnnotation(MGLMapView& mapView,
                                                        const MGLAnnotation& annotation);
};

}  // namespace quorvelkit
