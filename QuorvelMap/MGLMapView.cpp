// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MainQueueHook.h>
#include <QuorvelMap/MarkerPicture_p.h>
#include <QuorvelMap/PlainMapCanvas_p.h>
#include <QuorvelMap/QuickMapCanvas_p.h>
#include <QuorvelMap/StyleLoader_p.h>

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QPalette>
#include <QTimer>
#include <algorithm>
#include <optional>
#include <utility>

namespace quorvelkit {

namespace {

constexpr double defaultLineWidth = 3;

QUrl defaultStyleURL() { return QUrl(QStringLiteral("qrc:/quorvelmap/style.json")); }

}  // namespace

struct MGLMapView::Private {
  explicit Private(MGLMapView* mapView) : view(mapView), notice(new QLabel(mapView)) {
    notice->setStyleSheet(
        QStringLiteral("background: rgba(255, 255, 255, 200); color: #303030; padding: 1px 4px;"));
    notice->setTextFormat(Qt::RichText);
    notice->setOpenExternalLinks(true);
    notice->hide();
  }
  Private(const Private&) = delete;
  Private& operator=(const Private&) = delete;

  // An annotation with its looks, as they were when it was added.
  struct Drawn {
    std::optional<DrawnLine> line;
    std::optional<Coordinate> position;
    QImage image;
    QString title;
    int row = 0;
  };

  MGLMapView* const view;
  QLabel* const notice;
  QColor tintColor;
  std::weak_ptr<MGLMapViewDelegate> delegate;
  Annotations annotations;
  std::vector<Drawn> drawn;
  MapCamera camera;
  QUrl styleURL;
  QUrl soundStyleURL;
  CheckedStyle style;
  bool drawsStyle = false;
  QUrl tileHost;
  QString note = QStringLiteral("Nothing is drawn yet.");
  StyleLoader styleLoader;
  std::unique_ptr<MapCanvas> canvas;

  MapCamera currentCamera() const { return canvas ? canvas->camera() : camera; }

  void moveTo(const MapCamera& target) {
    camera = target;
    if (canvas) canvas->setCamera(target);
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
      if (asked) {
        if (const auto image = asked->imageForAnnotation(*view, annotation)) {
          looks.image = image->image();
        }
      }
      looks.position = point->coordinate();
      looks.title = QString::fromStdString(annotation.title());
      looks.row =
          static_cast<int>(std::count_if(drawn.begin(), drawn.end(), [&](const Drawn& other) {
            return other.position == looks.position && !other.title.isEmpty();
          }));
    }
    return looks;
  }

  void draw(const Drawn& looks) {
    if (!canvas) return;
    if (looks.line && looks.line->width > 0) canvas->add(*looks.line);
    if (looks.position) {
      const MarkerPicture picture = makeMarkerPicture(looks.image, looks.title, looks.row,
                                                      view->font(), view->devicePixelRatioF());
      canvas->add(DrawnMarker{*looks.position, picture.image, picture.anchor});
    }
  }

  void start() {
    stop();
    QString obstacles;
    for (const char* const name : {"mapboxgl", "osm"}) {
      const QString engine = QString::fromLatin1(name);
      if (engine == QLatin1String("osm") && tileHost.isEmpty()) continue;
      QString obstacle = obstacleTo(engine);
      if (obstacle.isEmpty()) canvas = startQuick(engine, &obstacle);
      if (canvas) {
        note = QStringLiteral("Drawn by Qt Location's engine %1.").arg(engine);
        break;
      }
      obstacles += QStringLiteral(" %1: %2.").arg(engine, obstacle);
    }
    if (!canvas) {
      startPlain();
      note = QStringLiteral("Drawn without a map, on a plain background.");
    }
    note += obstacles;
    show();
  }

  std::unique_ptr<MapCanvas> startQuick(const QString& engine, QString* obstacle) {
    QuickMapSetup setup;
    setup.engine = engine;
    setup.styleURL = soundStyleURL.isEmpty() ? defaultStyleURL() : soundStyleURL;
    setup.tileHost = tileHost;
    drawsStyle = engine == QLatin1String("mapboxgl");
    setup.failed = [this](const QString& reason) {
      QTimer::singleShot(0, view, [this, reason] { fallBack(reason); });
    };
    return makeQuickMapCanvas(view, setup, obstacle);
  }

  void startPlain() {
    canvas = makePlainMapCanvas(view);
    drawsStyle = false;
  }

  void fallBack(const QString& reason) {
    stop();
    startPlain();
    note = QStringLiteral("Drawn without a map, on a plain background. Qt Quick: %1.").arg(reason);
    show();
  }

  void show() {
    layOut();
    canvas->setCamera(camera);
    for (const Drawn& looks : drawn)
      draw(looks);
    canvas->widget()->show();
    showNotice();
  }

  void showNotice() {
    notice->setText(drawsStyle ? style.attribution : QString());
    notice->setVisible(!notice->text().isEmpty());
    notice->raise();
    layOut();
  }

  // The canvas fills the view; the notice stands in its lower right corner.
  void layOut() {
    if (canvas) canvas->widget()->setGeometry(view->rect());
    notice->setWordWrap(false);
    QSize size = notice->sizeHint();
    if (size.width() > view->width()) {
      notice->setWordWrap(true);
      size = QSize(view->width(), notice->heightForWidth(view->width()));
    }
    notice->resize(size);
    notice->move(view->width() - notice->width(), view->height() - notice->height());
  }

  void stop() {
    if (!canvas) return;
    camera = canvas->camera();
    canvas.reset();
  }

  void restart() {
    if (canvas) start();
  }
};

MGLMapView::MGLMapView(const QRect& frame, QWidget* parent)
    : QWidget(parent), d_(std::make_unique<Private>(this)) {
  installMainQueueHook();
  // An engine must be gone before the plugins that it uses are, and those go with the application
  // object. The view itself may stay: a handler of a request under way may hold it.
  connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
          [this] { d_->stop(); });
  if (!frame.isNull()) setGeometry(frame);
}

MGLMapView::~MGLMapView() { d_->canvas.reset(); }

QColor MGLMapView::tintColor() const {
  return d_->tintColor.isValid() ? d_->tintColor : palette().color(QPalette::Highlight);
}

void MGLMapView::setTintColor(const QColor& color) { d_->tintColor = color; }

std::shared_ptr<MGLMapViewDelegate> MGLMapView::delegate() const { return d_->delegate.lock(); }

void MGLMapView::setDelegate(std::weak_ptr<MGLMapViewDelegate> delegate) {
  d_->delegate = std::move(delegate);
}

QUrl MGLMapView::styleURL() const { return d_->styleURL; }

void MGLMapView::setStyleURL(const QUrl& url) {
  d_->styleURL = url;
  d_->style.flaw.clear();
  const QUrl checked = url.isEmpty() ? defaultStyleURL() : url;
  d_->styleLoader.check(
      checked,
      [this, checked](const CheckedStyle& style) {
        d_->style = style;
        d_->soundStyleURL = style.flaw.isEmpty() ? checked : QUrl();
        d_->restart();
      },
      [this](const QString& attribution) {
        d_->style.attribution = attribution;
        d_->showNotice();
      });
}

QUrl MGLMapView::tileHost() const { return d_->tileHost; }
void MGLMapView::setTileHost(const QUrl& url) { d_->tileHost = url; }

Coordinate MGLMapView::centerCoordinate() const { return d_->currentCamera().center; }

void MGLMapView::setCenterCoordinate(Coordinate center) {
  d_->moveTo({center, d_->currentCamera().zoomLevel});
}

double MGLMapView::zoomLevel() const { return d_->currentCamera().zoomLevel; }

void MGLMapView::setZoomLevel(double level) {
  d_->moveTo({d_->currentCamera().center, std::clamp(level, minimumZoomLevel, maximumZoomLevel)});
}

void MGLMapView::setVisibleCoordinates(const std::vector<Coordinate>& coordinates,
                                       const QMargins& edgePadding) {
  const auto camera = cameraShowing(coordinates, size(), edgePadding);
  if (camera) d_->moveTo(*camera);
}

QPointF MGLMapView::convertCoordinate(Coordinate coordinate) const {
  return viewPosition(d_->currentCamera(), size(), coordinate);
}

Coordinate MGLMapView::convertPoint(const QPointF& point) const {
  return coordinateAtViewPosition(d_->currentCamera(), size(), point);
}

const MGLMapView::Annotations& MGLMapView::annotations() const { return d_->annotations; }

void MGLMapView::addAnnotations(const Annotations& annotations) {
  for (const auto& annotation : annotations) {
    if (!annotation || std::count(d_->annotations.begin(), d_->annotations.end(), annotation) > 0) {
      continue;
    }
    Private::Drawn looks = d_->looksOf(*annotation);
    d_->draw(looks);
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
  if (!d_->canvas) return;
  d_->canvas->clear();
  for (const auto& looks : d_->drawn)
    d_->draw(looks);
}

QString MGLMapView::engineNote() const {
  if (d_->style.flaw.isEmpty()) return d_->note;
  return d_->note + QStringLiteral(" The style %1 could not be read: %2.")
                        .arg(d_->styleURL.toDisplayString(), d_->style.flaw);
}

bool MGLMapView::event(QEvent* event) {
  // An engine's drawing context belongs to its window; it is started anew in the next one.
  if (event->type() == QEvent::ParentAboutToChange) d_->stop();
  return QWidget::event(event);
}

void MGLMapView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  d_->layOut();
}

void MGLMapView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!d_->canvas) d_->start();
}

}  // namespace quorvelkit
