// SPDX-License-Identifier: Apache-2.0
#include "RouteLooks.h"

#include <QuorvelMap/MGLMapView.h>

#include <QImage>
#include <QPainter>

using namespace quorvelkit;

namespace {

constexpr double lineWidth = 5;
constexpr double rimWidth = 9;
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

std::shared_ptr<MGLPolyline> RouteLooks::makeRim(const MGLPolyline& line) {
  rim_ = std::make_shared<MGLPolyline>(line.coordinates());
  return rim_;
}

std::shared_ptr<MGLPointAnnotation> RouteLooks::makeTurn(Coordinate place) {
  turn_ = std::make_shared<MGLPointAnnotation>();
  turn_->setCoordinate(place);
  return turn_;
}

std::optional<MGLAnnotationImage> RouteLooks::imageForAnnotation(MGLMapView& mapView,
                                                                 const MGLAnnotation& annotation) {
  if (&annotation != turn_.get()) return std::nullopt;
  return MGLAnnotationImage(ring(theme_.turn, mapView.devicePixelRatioF()));
}

std::optional<double> RouteLooks::lineWidthForPolylineAnnotation(MGLMapView&,
                                                                 const MGLPolyline& annotation) {
  return &annotation == rim_.get() ? rimWidth : lineWidth;
}

std::optional<QColor> RouteLooks::strokeColorForShapeAnnotation(MGLMapView&,
                                                                const MGLAnnotation& annotation) {
  return &annotation == rim_.get() ? theme_.rim : theme_.line;
}
