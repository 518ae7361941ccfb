// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/QuickMapCanvas_p.h>

#include <QGeoPath>
#include <QGeoServiceProvider>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlError>
#include <QQmlProperty>
#include <QQuickItem>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QSqlDatabase>

// The names that the resource compiler generates are global.
static void registerResources() { Q_INIT_RESOURCE(quorvelmap); }

namespace quorvelkit {

namespace {

// At level 0 of Qt Location, the world is 256 pixels wide.
constexpr double zoomLevelOffset = 1;

QGeoCoordinate geoCoordinate(Coordinate c) {
  const Coordinate wrapped = coordinateAt(worldPosition(c));
  return QGeoCoordinate(wrapped.latitude, wrapped.longitude);
}

class QuickMapCanvas : public MapCanvas {
 public:
  QuickMapCanvas(QWidget* parent, const QuickMapSettings& settings)
      : widget_(new QQuickWidget(parent)) {
    // If this signal is not connected, Qt stops the process.
    QObject::connect(widget_, &QQuickWidget::sceneGraphError, widget_,
                     [failed = settings.failed](auto, const QString& message) { failed(message); });
    if (!drawsWithOpenGL()) return;
    widget_->setResizeMode(QQuickWidget::SizeRootObjectToView);
    widget_->resize(parent->size());
    // QQuickWidget::setSource() would print the errors of the component.
    widget_->engine()->setOutputWarningsToStandardError(false);
    const QUrl scene(QStringLiteral("qrc:/quorvelmap/MapCanvas.qml"));
    // The widget owns it.
    component_ = std::make_unique<QQmlComponent>(widget_->engine(), scene, widget_).release();
    QObject* const root = component_->isReady() ? component_->create() : nullptr;
    if (root == nullptr) return;
    widget_->setContent(scene, component_, root);
    root->setProperty("styleUrls", settings.styleURL.toString(QUrl::FullyEncoded));
    // The engine appends its paths without a slash.
    QString tileHost = settings.tileHost.toString(QUrl::FullyEncoded);
    if (!tileHost.endsWith(u'/')) tileHost += u'/';
    root->setProperty("tileHost", tileHost);
    QVariant map;
    QMetaObject::invokeMethod(root, "start", Q_RETURN_ARG(QVariant, map),
                              Q_ARG(QVariant, settings.engine));
    map_ = map.value<QObject*>();
    // QQuickWidget emits the signal on the GUI thread.
    QObject::connect(widget_->quickWindow(), &QQuickWindow::afterRendering, widget_,
                     settings.cameraChanged);
  }

  ~QuickMapCanvas() override { delete widget_; }

  // Why the engine did not start. Empty if it runs.
  QString startError() const {
    if (!drawsWithOpenGL()) return QStringLiteral("Qt Quick does not use OpenGL");
    if (map_ == nullptr) {
      const auto errors = component_->errors();
      return errors.isEmpty() ? QStringLiteral("the scene has no map") : errors.front().toString();
    }
    return map_->property("errorString").toString();
  }

  QWidget* widget() override { return widget_; }

  MapCamera camera() const override {
    const auto center = map_->property("center").value<QGeoCoordinate>();
    return {{center.latitude(), center.longitude()},
            map_->property("zoomLevel").toDouble() - zoomLevelOffset};
  }

  // Sets the zoom level first, because it limits the latitude of the center.
  void setCamera(const MapCamera& camera) override {
    map_->setProperty("zoomLevel", camera.zoomLevel + zoomLevelOffset);
    map_->setProperty("center", QVariant::fromValue(geoCoordinate(camera.center)));
  }

  void add(const DrawnLine& line) override {
    for (const auto& piece : line.pieces) {
      QList<QGeoCoordinate> coordinates;
      coordinates.reserve(static_cast<int>(piece.size()));
      for (const Coordinate& c : piece) {
        coordinates.append(QGeoCoordinate(c.latitude, c.longitude));
      }
      QVariant made;
      QMetaObject::invokeMethod(widget_->rootObject(), "makeLine", Q_RETURN_ARG(QVariant, made));
      QObject* const item = made.value<QObject*>();
      QQmlProperty::write(item, QStringLiteral("line.width"), line.width);
      QQmlProperty::write(item, QStringLiteral("line.color"), line.color);
      QMetaObject::invokeMethod(item, "setPath", Q_ARG(QGeoPath, QGeoPath(coordinates)));
      QMetaObject::invokeMethod(widget_->rootObject(), "add",
                                Q_ARG(QVariant, QVariant::fromValue(item)));
    }
  }

  void clear() override { QMetaObject::invokeMethod(widget_->rootObject(), "clear"); }

 private:
  // The application or the environment can select another graphics API. Then engines draw nothing.
  bool drawsWithOpenGL() const {
    return widget_->quickWindow()->rendererInterface()->graphicsApi() ==
           QSGRendererInterface::OpenGL;
  }

  QPointer<QQuickWidget> widget_;
  QQmlComponent* component_ = nullptr;
  QObject* map_ = nullptr;
};

bool canUseOpenGL() {
  QOffscreenSurface surface;
  surface.create();
  QOpenGLContext context;
  return context.create() && context.makeCurrent(&surface);
}

}  // namespace

std::unique_ptr<MapCanvas> makeQuickMapCanvas(QWidget* parent, const QuickMapSettings& settings,
                                              QString* reason) {
  registerResources();
  auto canvas = std::make_unique<QuickMapCanvas>(parent, settings);
  *reason = canvas->startError();
  if (!reason->isEmpty()) return nullptr;
  return canvas;
}

QString unavailabilityReason(const QString& engine) {
  if (!canUseOpenGL()) return QStringLiteral("OpenGL is not available");
  if (!QGeoServiceProvider::availableServiceProviders().contains(engine)) {
    return QStringLiteral("Qt Location's plugin is missing");
  }
  // The engine stops the process if this driver is missing.
  if (engine == QLatin1String("mapboxgl") &&
      !QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE"))) {
    return QStringLiteral("Qt's SQLite driver is missing");
  }
  return QString();
}

}  // namespace quorvelkit
