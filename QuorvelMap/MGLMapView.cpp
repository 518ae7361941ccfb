// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/AnnotationStore_p.h>
#include <QuorvelMap/AttributionLabel_p.h>
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelMap/MapAccessible_p.h>
#include <QuorvelMap/MapControls_p.h>
#include <QuorvelMap/MapEngine_p.h>
#include <QuorvelMap/MapInput_p.h>
#include <QuorvelMap/MarkerLayer_p.h>

#include <QCoreApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPalette>
#include <QTouchEvent>
#include <QWheelEvent>
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
        engine(mapView, {[this] { show(); }, [this] { followCamera(); }}),
        input(*mapView),
        controls(*mapView, input) {}
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
  AnnotationStore<std::shared_ptr<const MGLAnnotation>, Drawn> annotations;
  MapEngine engine;
  MapInput input;
  MapControls controls;
  // The last focus came by a key, or a key was used since.
  bool usesKeyboard = false;

  void showFocus(bool byKeyboard) {
    usesKeyboard = byKeyboard;
    controls.showFocus(byKeyboard);
  }

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
    for (const Drawn& looks : annotations.looks())
      drawLine(looks);
    QWidget* const canvas = engine.canvas()->widget();
    // Events are for the view, which handles them the same way for each canvas.
    canvas->setAttribute(Qt::WA_TransparentForMouseEvents);
    canvas->setFocusPolicy(Qt::NoFocus);
    canvas->show();
    canvas->lower();
    followCamera();
    notice->setNotice(engine.attribution());
    layOut();
  }

  void followCamera() {
    markers->setCamera(engine.camera());
    controls.updateScale();
  }

  // Canvas and markers fill the view; the notice stands in its lower right corner, above all else.
  void layOut() {
    if (engine.canvas() != nullptr) engine.canvas()->widget()->setGeometry(view->rect());
    markers->setGeometry(view->rect());
    notice->layOut();
    controls.layOut(notice->isHidden() ? QRect() : notice->geometry());
    notice->raise();
  }
};

MGLMapView::MGLMapView(const QRect& frame, QWidget* parent)
    : QWidget(parent), d_(std::make_unique<Private>(this)) {
  installMainQueueHook();
  installMapAccessibility();
  setAccessibleName(tr("Map"));
  setAttribute(Qt::WA_AcceptTouchEvents);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
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

const MGLMapView::Annotations& MGLMapView::annotations() const { return d_->annotations.items(); }

void MGLMapView::addAnnotations(const Annotations& annotations) {
  for (const auto& annotation : annotations) {
    if (!annotation || d_->annotations.contains(annotation)) continue;
    Private::Drawn looks = d_->looksOf(*annotation);
    if (!d_->annotations.add(annotation, std::move(looks))) continue;
    const Private::Drawn& drawn = d_->annotations.looks().back();
    d_->drawLine(drawn);
    if (drawn.marker) d_->markers->add(*drawn.marker);
  }
}

void MGLMapView::removeAnnotations(const Annotations& annotations) {
  d_->annotations.remove(annotations);
  d_->markers->clear();
  if (d_->engine.canvas() != nullptr) d_->engine.canvas()->clear();
  for (const auto& looks : d_->annotations.looks()) {
    d_->drawLine(looks);
    if (looks.marker) d_->markers->add(*looks.marker);
  }
}

QString MGLMapView::engineNote() const { return d_->engine.note(); }

bool MGLMapView::showsZoomButtons() const { return d_->controls.hasButtons(); }
void MGLMapView::setShowsZoomButtons(bool shown) { d_->controls.showButtons(shown); }
bool MGLMapView::showsScaleBar() const { return d_->controls.hasScaleBar(); }
void MGLMapView::setShowsScaleBar(bool shown) { d_->controls.showScaleBar(shown); }

QSize MGLMapView::sizeHint() const { return {480, 360}; }
QSize MGLMapView::minimumSizeHint() const { return {160, 120}; }

bool MGLMapView::event(QEvent* event) {
  switch (event->type()) {
    // An engine's drawing context belongs to its window; it is started anew in the next one.
    case QEvent::ParentAboutToChange: d_->engine.stop(); break;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      event->setAccepted(d_->input.touch(static_cast<const QTouchEvent&>(*event)));
      return true;
    default: break;
  }
  return QWidget::event(event);
}

// The frame is for those who use keys. A window that comes to the front leaves it as it was.
void MGLMapView::focusInEvent(QFocusEvent* event) {
  switch (event->reason()) {
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason: d_->showFocus(d_->usesKeyboard); break;
    default: d_->showFocus(event->reason() != Qt::MouseFocusReason);
  }
}

void MGLMapView::focusOutEvent(QFocusEvent*) { d_->controls.showFocus(false); }

void MGLMapView::keyPressEvent(QKeyEvent* event) {
  event->setAccepted(d_->input.key(*event));
  if (event->isAccepted()) d_->showFocus(true);
}

void MGLMapView::mouseDoubleClickEvent(QMouseEvent* event) {
  event->setAccepted(d_->input.doubleClick(*event));
}

void MGLMapView::mouseMoveEvent(QMouseEvent* event) { event->setAccepted(d_->input.drag(*event)); }

void MGLMapView::mousePressEvent(QMouseEvent* event) {
  event->setAccepted(d_->input.press(*event));
}

void MGLMapView::wheelEvent(QWheelEvent* event) { event->setAccepted(d_->input.wheel(*event)); }

void MGLMapView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  d_->layOut();
}

void MGLMapView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (d_->engine.canvas() == nullptr) d_->engine.start();
}

}  // namespace quorvelkit
