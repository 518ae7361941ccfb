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

/// Styles what is drawn on a map view. Every function is optional: override those that matter, the
/// base's empty answer stands for "not implemented" and the asker's default applies.
///
/// The map view asks when an annotation is added to it, on the GUI thread, and keeps the answers:
/// width, colour and alpha of a line, in this order, and the image of a point. What the delegate
/// adds to the map view meanwhile comes to lie below the annotation that it is asked about.
class QUORVELKIT_EXPORT MGLMapViewDelegate {
 public:
  virtual ~MGLMapViewDelegate();

  /// A point's marker. Default: the map view's own pin.
  virtual std::optional<MGLAnnotationImage> imageForAnnotation(MGLMapView& mapView,
                                                               const MGLAnnotation& annotation);
  /// In device-independent pixels; a line of width 0 or less is not drawn. Default: 3.
  virtual std::optional<double> lineWidthForPolylineAnnotation(MGLMapView& mapView,
                                                               const MGLPolyline& annotation);
  /// Default: the map view's tint colour.
  virtual std::optional<QColor> strokeColorForShapeAnnotation(MGLMapView& mapView,
                                                              const MGLAnnotation& annotation);
  /// From 0 (invisible) to 1, multiplied with the colour's own alpha. Default: 1.
  virtual std::optional<double> alphaForShapeAnnotation(MGLMapView& mapView,
                                                        const MGLAnnotation& annotation);
};

}  // namespace quorvelkit
