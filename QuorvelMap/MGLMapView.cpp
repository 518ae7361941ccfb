// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/AnnotationAppearance_p.h>
#include <QuorvelMap/AnnotationFit_p.h>
#include <QuorvelMap/AnnotationStore_p.h>
#include <QuorvelMap/AttributionLabel_p.h>
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
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
#include <utility>

namespace quorvelkit {

struct MGLMapView::Private {
  explicit Private(MGLMapView* mapView)
      : view(mapView),
        markers(new MarkerLayer(mapView)),
        attribution(new AttributionLabel(mapView)),
        engine(mapView, {[this] { showCanvas(); }, [this] { updateForCamera(); }}),
        input(*mapView),
        controls(*mapView, input) {}
  Private(const Private&) = delete;
  Private& operator=(const Private&) = delete;

  MGLMapView* const view;
  MarkerLayer* const markers;
  AttributionLabel* const attribution;
  QColor tintColor;
  std::weak_ptr<MGLMapViewDelegate> delegate;
  AnnotationStore<std::shared_ptr<const MGLAnnotation>, AnnotationAppearance> annotations;
  MapEngine engine;
  MapInput input;
  MapControls controls;
  // True if the view got the focus by a key or has handled a key since.
  bool isKeyboardUsed = false;

  void setFocusShown(bool byKeyboard) {
    isKeyboardUsed = byKeyboard;
    controls.setFocusShown(byKeyboard);
  }

  void drawLine(const AnnotationAppearance& appearance) {
    if (engine.canvas() != nullptr && appearance.line && appearance.line->width > 0)
      engine.canvas()->add(*appearance.line);
  }

  void showCanvas() {
    for (const AnnotationAppearance& appearance : annotations.appearances())
      drawLine(appearance);
    QWidget* const canvas = engine.canvas()->widget();
    // The map view handles all events, so that input is the same for all engines.
    canvas->setAttribute(Qt::WA_TransparentForMouseEvents);
    canvas->setFocusPolicy(Qt::NoFocus);
    canvas->show();
    canvas->lower();
    updateForCamera();
    attribution->setHtml(engine.attributions());
    layOut();
  }

  void updateForCamera() {
    controls.updateScale();
    markers->setObstacles(controls.areas());
    markers->setCamera(engine.camera());
  }

  // The attribution is above all other widgets.
  void layOut() {
    if (engine.canvas() != nullptr) engine.canvas()->widget()->setGeometry(view->rect());
    markers->setGeometry(view->rect());
    attribution->layOut();
    controls.layOut(attribution->isHidden() ? QRect() : attribution->geometry());
    markers->setObstacles(controls.areas());
    attribution->raise();
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
  // The application object unloads the plugins of the engine, so the engine stops before. The view
  // may live longer, because the handler of a running request may own it.
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
  const auto camera = cameraFitting(coordinates, size(), edgePadding);
  if (camera) d_->engine.setCamera(*camera);
}

bool MGLMapView::showAnnotations() {
  const auto camera = cameraFittingAnnotations(annotations(), size(), d_->controls.margins());
  if (camera) d_->engine.setCamera(*camera);
  return camera.has_value();
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
    auto appearance = appearanceOf(*this, *annotation);
    if (!appearance) return;  // The delegate has destroyed this view.
    if (!d_->annotations.add(annotation, *std::move(appearance))) continue;
    const AnnotationAppearance& drawn = d_->annotations.appearances().back();
    d_->drawLine(drawn);
    if (drawn.marker) d_->markers->add(*drawn.marker);
  }
}

void MGLMapView::removeAnnotations(const Annotations& annotations) {
  d_->annotations.remove(annotations);
  d_->markers->clear();
  if (d_->engine.canvas() != nullptr) d_->engine.canvas()->clear();
  for (const auto& appearance : d_->annotations.appearances()) {
    d_->drawLine(appearance);
    if (appearance.marker) d_->markers->add(*appearance.marker);
  }
}

QString MGLMapView::engineNote() const { return d_->engine.note(); }

bool MGLMapView::showsZoomButtons() const { return d_->controls.showsButtons(); }
void MGLMapView::setShowsZoomButtons(bool shown) {
  d_->controls.setShowsButtons(shown);
  d_->updateForCamera();
}
bool MGLMapView::showsScaleBar() const { return d_->controls.showsScaleBar(); }
void MGLMapView::setShowsScaleBar(bool shown) {
  d_->controls.setShowsScaleBar(shown);
  d_->updateForCamera();
}

QSize MGLMapView::sizeHint() const { return {480, 360}; }
QSize MGLMapView::minimumSizeHint() const { return {160, 120}; }

bool MGLMapView::event(QEvent* event) {
  switch (event->type()) {
    // The OpenGL context of an engine belongs to the window. showEvent() restarts the engine.
    case QEvent::ParentAboutToChange: d_->engine.stop(); break;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      event->setAccepted(d_->input.touch(static_cast<const QTouchEvent&>(*event)));
      return true;
    default: break;
  }
  const bool isHandled = QWidget::event(event);
  // The sizes of the controls and of the attribution depend on them.
  if (event->type() == QEvent::FontChange || event->type() == QEvent::LocaleChange) d_->layOut();
  return isHandled;
}

// Shows the focus frame to keyboard users only. A window that becomes active does not change it.
void MGLMapView::focusInEvent(QFocusEvent* event) {
  switch (event->reason()) {
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason: d_->setFocusShown(d_->isKeyboardUsed); break;
    default: d_->setFocusShown(event->reason() != Qt::MouseFocusReason);
  }
}

void MGLMapView::focusOutEvent(QFocusEvent*) { d_->controls.setFocusShown(false); }

void MGLMapView::keyPressEvent(QKeyEvent* event) {
  event->setAccepted(d_->input.key(*event));
  if (event->isAccepted()) d_->setFocusShown(true);
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
