// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MGLAnnotation.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

namespace quorvelkit {

MGLAnnotation::MGLAnnotation() = default;
MGLAnnotation::~MGLAnnotation() = default;

MGLPointAnnotation::MGLPointAnnotation() = default;
MGLPointAnnotation::~MGLPointAnnotation() = default;

MGLPolyline::MGLPolyline(std::vector<Coordinate> coordinates)
    : coordinates_(std::move(coordinates)) {}
MGLPolyline::~MGLPolyline() = default;

MGLMapViewDelegate::~MGLMapViewDelegate() = default;

std::optional<MGLAnnotationImage> MGLMapViewDelegate::imageForAnnotation(MGLMapView&,
                                                                         const MGLAnnotation&) {
  return std::nullopt;
}
std::optional<double> MGLMapViewDelegate::lineWidthForPolylineAnnotation(MGLMapView&,
                                                                         const MGLPolyline&) {
  return std::nullopt;
}
std::optional<QColor> MGLMapViewDelegate::strokeColorForShapeAnnotation(MGLMapView&,
                                                                        const MGLAnnotation&) {
  return std::nullopt;
}
std::optional<double> MGLMapViewDelegate::alphaForShapeAnnotation(MGLMapView&,
                                                                  const MGLAnnotation&) {
  return std::nullopt;
}

}  // namespace quorvelkit
