// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/AttributionLabel_p.h>
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelMap/MapEngine_p.h>
#include <QuorvelMap/MarkerLayer_p.h>

#include <QCoreApplication>
#include <QEvent>
#include <QPalette>
#include <algorithm>
#include <optional>
#include <utility>

namespace quorvelkit {

namespace {

constexpr double defaultLineWidth = 3;

}  // namespace

struct MGLMapView::Private {
  explicit Private(MGLMapView* mapView)
      : view(mapView),
        markers(new MarkerLayer(mapView)),
        notice(new AttributionLabel(mapView)),
        engine(mapView, {[this] { show(); }, [this] { markers->setCamera(engine.camera()); }}) {}
  Private(const Private&) = delete;
  Private& operator=(const Private&) = delete;

  // An annotation with its looks, as they were when it was added.
  struct Drawn {
    std::optional<DrawnLine> line;
    std::optional<DrawnMarker> marker;
  };

  MGLMapView* const view;
  MarkerLayer* const markers;
  AttributionLabel* const notice;
  QColor tintColor;
  std::weak_ptr<MGLMapViewDelegate> delegate;
  Annotations annotations;
  std::vector<Drawn> drawn;
  MapEngine engine;

  Drawn looksOf(const MGLAnnotation& annotation) {
    Drawn looks;
    const auto asked = delegate.lock();
    if (const auto* line = dynamic_cast<const MGLPolyline*>(&annotation)) {
      std::optional<double> width;
      std::optional<QColor> color;
      std::optional<double> alpha;
      if (asked) {
        width = asked->lineWidthForPolylineAnnotation(*view, *line);
        color = asked->strokeColorForShapeAnnotation(*view, *line);
        alpha = asked->alphaForShapeAnnotation(*view, *line);
      }
      looks.line.emplace();
      looks.line->pieces = splitAtAntimeridian(line->coordinates());
      looks.line->width = std::max(width.value_or(defaultLineWidth), 0.0);
      looks.line->color = color.value_or(view->tintColor());
      looks.line->color.setAlphaF(looks.line->color.alphaF() *
                                  std::clamp(alpha.value_or(1), 0.0, 1.0));
    } else if (const auto* point = dynamic_cast<const MGLPointAnnotation*>(&annotation)) {
      looks.marker.emplace();
      if (asked) {
        if (const auto image = asked->imageForAnnotation(*view, annotation)) {
          looks.marker->image = image->image();
        }
      }
      looks.marker->coordinate = point->coordinate();
      looks.marker->title = QString::fromStdString(annotation.title());
    }
    return looks;
  }

  void drawLine(const Drawn& looks) {
    if (engine.canvas() != nullptr && looks.line && looks.line->width > 0)
      engine.canvas()->add(*looks.line);
  }

  void show() {
    for (const Drawn& looks : drawn)
      drawLine(looks);
    engine.canvas()->widget()->show();
    engine.canvas()->widget()->lower();
    markers->setCamera(engine.camera());
    notice->setNotice(engine.attribution());
    layOut();
  }

  // Canvas and markers fill the view; the notice stands in its lower right corner.
  void layOut() {
    if (engine.canvas() != nullptr) engine.canvas()->widget()->setGeometry(view->rect());
    markers->setGeometry(view->rect());
    notice->layOut();
  }
};

MGLMapView::MGLMapView(const QRect& frame, QWidget* parent)
    : QWidget(parent), d_(std::make_unique<Private>(this)) {
  installMainQueueHook();
  // An engine must be gone before the plugins that it uses are, and those go with the application
  // object. The view itself may stay: a handler of a request under way may hold it.
  connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
          [this] { d_->engine.stop(); });
  if (!frame.isNull()) setGeometry(frame);
}

MGLMapView::~MGLMapView() { d_->engine.stop(); }

QColor MGLMapView::tintColor() const {
  return d_->tintColor.isValid() ? d_->tintColor : palette().color(QPalette::Highlight);
}

void MGLMapView::setTintColor(const QColor& color) { d_->tintColor = color; }

std::shared_ptr<MGLMapViewDelegate> MGLMapView::delegate() const { return d_->delegate.lock(); }

void MGLMapView::setDelegate(std::weak_ptr<MGLMapViewDelegate> delegate) {
  d_->delegate = std::move(delegate);
}

QUrl MGLMapView::styleURL() const { return d_->engine.styleURL(); }
void MGLMapView::setStyleURL(const QUrl& url) { d_->engine.setStyleURL(url); }
QUrl MGLMapView::tileHost() const { return d_->engine.tileHost(); }
void MGLMapView::setTileHost(const QUrl& url, const QString& attribution) {
  d_->engine.setTileHost(url, attribution);
}

Coordinate MGLMapView::centerCoordinate() const { return d_->engine.camera().center; }

void MGLMapView::setCenterCoordinate(Coordinate center) {
  d_->engine.setCamera({center, d_->engine.camera().zoomLevel});
}

double MGLMapView::zoomLevel() const { return d_->engine.camera().zoomLevel; }

void MGLMapView::setZoomLevel(double level) {
  d_->engine.setCamera(
      {d_->engine.camera().center, std::clamp(level, minimumZoomLevel, maximumZoomLevel)});
}

void MGLMapView::setVisibleCoordinates(const std::vector<Coordinate>& coordinates,
                                       const QMargins& edgePadding) {
  const auto camera = cameraShowing(coordinates, size(), edgePadding);
  if (camera) d_->engine.setCamera(*camera);
}

QPointF MGLMapView::convertCoordinate(Coordinate coordinate) const {
  return viewPosition(d_->engine.camera(), size(), coordinate);
}

Coordinate MGLMapView::convertPoint(const QPointF& point) const {
  return coordinateAtViewPosition(d_->engine.camera(), size(), point);
}

const MGLMapView::Annotations& MGLMapView::annotations() const { return d_->annotations; }

void MGLMapView::addAnnotations(const Annotations& annotations) {
  for (const auto& annotation : annotations) {
    if (!annotation || std::count(d_->annotations.begin(), d_->annotations.end(), annotation) > 0) {
      continue;
    }
    Private::Drawn looks = d_->looksOf(*annotation);
    d_->drawLine(looks);
    if (looks.marker) d_->markers->add(*looks.marker);
    d_->annotations.push_back(annotation);
    d_->drawn.push_back(std::move(looks));
  }
}

void MGLMapView::removeAnnotations(const Annotations& annotations) {
  // The list may be the view's own.
  Annotations kept;
  std::vector<Private::Drawn> keptLooks;
  for (std::size_t i = 0; i < d_->annotations.size(); ++i) {
    const auto& annotation = d_->annotations[i];
    if (std::count(annotations.begin(), annotations.end(), annotation) > 0) continue;
    kept.push_back(annotation);
    keptLooks.push_back(std::move(d_->drawn[i]));
  }
  d_->annotations = std::move(kept);
  d_->drawn = std::move(keptLooks);
  d_->markers->clear();
  if (d_->engine.canvas() != nullptr) d_->engine.canvas()->clear();
  for (const auto& looks : d_->drawn) {
    d_->drawLine(looks);
    if (looks.marker) d_->markers->add(*looks.marker);
  }
}

QString MGLMapView::engineNote() const { return d_->engine.note(); }

bool MGLMapView::event(QEvent* event) {
  // An engine's drawing context belongs to its window; it is started anew in the next one.
  if (event->type() == QEvent::ParentAboutToChange) d_->engine.stop();
  return QWidget::event(event);
}

void MGLMapView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  d_->layOut();
}

void MGLMapView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (d_->engine.canvas() == nullptr) d_->engine.start();
}

}  // namespace quorvelkit
