// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVViewController.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>
#include <QuorvelPlatform/FatalError.h>

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <vector>

namespace quorvelkit {

namespace {

// Stops the process if the value is absent.
template <class T>
const T& valueOrAbort(const std::optional<T>& value) {
  if (!value) fatalError(unwrappedAbsentValue);
  return *value;
}

std::shared_ptr<const MGLAnnotation> makeMarker(const char* title, const QVPoint& point) {
  auto marker = std::make_shared<MGLPointAnnotation>();
  marker->setTitle(title);
  marker->setCoordinate(point.location());
  return marker;
}

}  // namespace

// The root widget. Its destructor does not delete the map view.
class QVViewController::View : public QWidget {
 public:
  explicit View(QVViewController* controller) : controller_(controller) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  ~View() override {
    MGLMapView* const map = controller_->mapview_;
    if (map != nullptr && map->parentWidget() == this) map->setParent(nullptr);
  }

  QSize sizeHint() const override {
    const MGLMapView* const map = controller_->mapview_;
    return map != nullptr ? map->sizeHint() : QWidget::sizeHint();
  }
  QSize minimumSizeHint() const override {
    const MGLMapView* const map = controller_->mapview_;
    return map != nullptr ? map->minimumSizeHint() : QWidget::minimumSizeHint();
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QWidget::resizeEvent(event);
    controller_->viewDidLayoutSubviews();
  }

 private:
  QVViewController* const controller_;
};

QVViewController::QVViewController(Construction)
    : mapview_(new MGLMapView(QRect(QPoint(), QGuiApplication::primaryScreen()->size()))) {}

QVViewController::~QVViewController() {
  delete view_;
  delete mapview_;
}

bool QVViewController::canMake() {
  return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr &&
         QGuiApplication::primaryScreen() != nullptr;
}

Coordinate QVViewController::origin() const { return valueOrAbort(origin_); }
Coordinate QVViewController::destination() const { return valueOrAbort(destination_); }

QWidget* QVViewController::view() {
  if (!view_) {
    view_ = std::make_unique<View>(this).release();
    viewDidLoad();
  }
  return view_;
}

void QVViewController::viewDidLoad() {
#ifndef NDEBUG
  if (!origin_) fatalError("Origin must be set.");
  if (!destination_) fatalError("Destination must be set.");
#endif
  if (mapview_) {
    mapview_->setParent(view_);
    mapview_->show();
  }
  QVNavigation::route(std::make_shared<QVRouteRequest>(origin(), destination()),
                      [self = shared_from_this()](const auto& response) {
                        self->route_ = response->route();
                        self->drawRoute();
                        self->didReceiveRoute(response);
                      });
}

void QVViewController::didReceiveRoute(const std::shared_ptr<QVRouteResponse>&) {}

void QVViewController::viewDidLayoutSubviews() {
  if (mapview_ && view_) mapview_->setFrame(view_->rect());
}

void QVViewController::drawRoute() {
  if (!route_ || !mapview_) return;
  const auto& points = route_->points();
  MGLMapView::Annotations annotations;
  if (!points.empty()) {
    annotations.push_back(makeMarker("origin", points.front()));
    annotations.push_back(makeMarker("destination", points.back()));
  }
  std::vector<Coordinate> locations;
  locations.reserve(points.size());
  for (const QVPoint& point : points)
    locations.push_back(point.location());
  annotations.push_back(std::make_shared<MGLPolyline>(std::move(locations)));
  mapview_->addAnnotations(annotations);
}

std::shared_ptr<MGLMapViewDelegate> QVViewController::activeDelegate() const {
  return mapview_ ? delegate() : nullptr;
}

std::optional<MGLAnnotationImage> QVViewController::imageForAnnotation(
    MGLMapView&, const MGLAnnotation& annotation) {
  const auto active = activeDelegate();
  return active ? active->imageForAnnotation(*mapview_, annotation) : std::nullopt;
}

std::optional<double> QVViewController::lineWidthForPolylineAnnotation(
    MGLMapView&, const MGLPolyline& annotation) {
  const auto active = activeDelegate();
  const auto width =
      active ? active->lineWidthForPolylineAnnotation(*mapview_, annotation) : std::nullopt;
  return width.value_or(3.0);
}

std::optional<QColor> QVViewController::strokeColorForShapeAnnotation(
    MGLMapView& mapView, const MGLAnnotation& annotation) {
  const QPointer<MGLMapView> map(mapview_ ? mapview_.data() : &mapView);
  const auto active = activeDelegate();
  auto color = active ? active->strokeColorForShapeAnnotation(*mapview_, annotation) : std::nullopt;
  // The delegate may have destroyed the map view. Then nothing is drawn.
  if (color || !map) return color;
  QColor tint = map->tintColor();
  if (!tint.isValid()) fatalError(unwrappedAbsentValue);
  return tint;
}

std::optional<double> QVViewController::alphaForShapeAnnotation(MGLMapView&,
                                                                const MGLAnnotation& annotation) {
  const auto active = activeDelegate();
  const auto alpha = active ? active->alphaForShapeAnnotation(*mapview_, annotation) : std::nullopt;
  return alpha.value_or(1.0);
}

}  // namespace quorvelkit
