// SPDX-License-Identifier: Apache-2.0
#include "RouteDelegate.h"

#include <QuorvelMap/MGLMapView.h>

#include <QImage>
#include <QPainter>

using namespace quorvelkit;

namespace {

constexpr double lineWidth = 5;
constexpr double outlineWidth = 9;
constexpr int ringSize = 26;

QImage ring(const QColor& color, double devicePixelRatio) {
  QImage image(QSize(ringSize, ringSize) * devicePixelRatio, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(devicePixelRatio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF circle = QRectF(0, 0, ringSize, ringSize).adjusted(4, 4, -4, -4);
  painter.setPen(QPen(Qt::white, 7));
  painter.drawEllipse(circle);
  painter.setPen(QPen(color, 4));
  painter.drawEllipse(circle);
  return image;
}

}  // namespace

std::shared_ptr<MGLPolyline> RouteDelegate::makeOutline(const MGLPolyline& line) {
  outline_ = std::make_shared<MGLPolyline>(line.coordinates());
  return outline_;
}

std::shared_ptr<MGLPointAnnotation> RouteDelegate::makeTurnMarker(Coordinate coordinate) {
  turnMarker_ = std::make_shared<MGLPointAnnotation>();
  turnMarker_->setCoordinate(coordinate);
  return turnMarker_;
}

std::optional<MGLAnnotationImage> RouteDelegate::imageForAnnotation(
    MGLMapView& mapView, const MGLAnnotation& annotation) {
  if (&annotation != turnMarker_.get()) return std::nullopt;
  return MGLAnnotationImage(ring(theme_.turn, mapView.devicePixelRatioF()));
}

std::optional<double> RouteDelegate::lineWidthForPolylineAnnotation(MGLMapView&,
                                                                    const MGLPolyline& annotation) {
  return &annotation == outline_.get() ? outlineWidth : lineWidth;
}

std::optional<QColor> RouteDelegate::strokeColorForShapeAnnotation(
    MGLMapView&, const MGLAnnotation& annotation) {
  return &annotation == outline_.get() ? theme_.outline : theme_.line;
}
