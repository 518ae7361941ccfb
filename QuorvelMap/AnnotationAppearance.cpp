// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/AnnotationAppearance_p.h>
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

#include <QPointer>
#include <algorithm>

namespace quorvelkit {

namespace {

constexpr double defaultLineWidth = 3;

// The result is not complete if the view was destroyed.
DrawnLine drawnLine(const QPointer<MGLMapView>& view, MGLMapViewDelegate* delegate,
                    const MGLPolyline& polyline) {
  std::optional<double> width;
  std::optional<QColor> color;
  std::optional<double> alpha;
  if (delegate != nullptr) {
    width = delegate->lineWidthForPolylineAnnotation(*view, polyline);
    if (view) color = delegate->strokeColorForShapeAnnotation(*view, polyline);
    if (view) alpha = delegate->alphaForShapeAnnotation(*view, polyline);
  }
  DrawnLine line;
  if (!view) return line;
  line.pieces = splitAtAntimeridian(polyline.coordinates());
  line.width = std::max(width.value_or(defaultLineWidth), 0.0);
  line.color = color.value_or(view->tintColor());
  line.color.setAlphaF(line.color.alphaF() * std::clamp(alpha.value_or(1), 0.0, 1.0));
  return line;
}

DrawnMarker drawnMarker(MGLMapView& view, MGLMapViewDelegate* delegate,
                        const MGLPointAnnotation& point) {
  DrawnMarker marker;
  if (delegate != nullptr) {
    const auto image = delegate->imageForAnnotation(view, point);
    if (image) marker.image = image->image();
  }
  marker.coordinate = point.coordinate();
  marker.title = QString::fromStdString(point.title());
  return marker;
}

}  // namespace

std::optional<AnnotationAppearance> appearanceOf(MGLMapView& view,
                                                 const MGLAnnotation& annotation) {
  const QPointer<MGLMapView> watched(&view);
  AnnotationAppearance appearance;
  auto delegate = view.delegate();
  if (const auto* polyline = dynamic_cast<const MGLPolyline*>(&annotation)) {
    appearance.line = drawnLine(watched, delegate.get(), *polyline);
  } else if (const auto* point = dynamic_cast<const MGLPointAnnotation*>(&annotation)) {
    appearance.marker = drawnMarker(view, delegate.get(), *point);
  }
  // Destroys the view if its view controller has no other owner.
  delegate.reset();
  if (!watched) return std::nullopt;
  return appearance;
}

}  // namespace quorvelkit
