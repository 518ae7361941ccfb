// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MapEngine_p.h>
#include <QuorvelMap/PlainMapCanvas_p.h>
#include <QuorvelMap/QuickMapCanvas_p.h>

#include <QTimer>
#include <QWidget>
#include <utility>

namespace quorvelkit {

namespace {

QUrl defaultStyleURL() { return QUrl(QStringLiteral("qrc:/quorvelmap/style.json")); }

}  // namespace

MapEngine::MapEngine(QWidget* view, Handlers handlers)
    : view_(view), handlers_(std::move(handlers)) {}

MapEngine::~MapEngine() = default;

void MapEngine::start() {
  stop();
  QString obstacles;
  for (const char* const name : {"mapboxgl", "osm"}) {
    const QString engine = QString::fromLatin1(name);
    if (engine == QLatin1String("osm") && tileHost_.isEmpty()) continue;
    QString obstacle = obstacleTo(engine);
    if (obstacle.isEmpty()) canvas_ = startQuick(engine, &obstacle);
    if (canvas_) {
      note_ = QStringLiteral("Drawn by Qt Location's engine %1.").arg(engine);
      break;
    }
    obstacles += QStringLiteral(" %1: %2.").arg(engine, obstacle);
  }
  if (!canvas_) {
    startPlain();
    note_ = QStringLiteral("Drawn without a map, on a plain background.");
  }
  note_ += obstacles;
  announce();
}

void MapEngine::stop() {
  if (!canvas_) return;
  camera_ = canvas_->camera();
  canvas_.reset();
}

void MapEngine::setCamera(const MapCamera& camera) {
  camera_ = camera;
  if (canvas_) canvas_->setCamera(camera);
}

void MapEngine::setStyleURL(const QUrl& url) {
  styleURL_ = url;
  style_.flaw.clear();
  const QUrl checked = url.isEmpty() ? defaultStyleURL() : url;
  styleLoader_.check(
      checked,
      [this, checked](const CheckedStyle& style) {
        style_ = style;
        soundStyleURL_ = style.flaw.isEmpty() ? checked : QUrl();
        if (canvas_) start();
      },
      [this](const QString& attribution) {
        style_.attribution = attribution;
        handlers_.attributionChanged();
      });
}

QString MapEngine::attribution() const { return drawsStyle_ ? style_.attribution : QString(); }

QString MapEngine::note() const {
  if (style_.flaw.isEmpty()) return note_;
  return note_ + QStringLiteral(" The style %1 could not be read: %2.")
                     .arg(styleURL_.toDisplayString(), style_.flaw);
}

std::unique_ptr<MapCanvas> MapEngine::startQuick(const QString& engine, QString* obstacle) {
  QuickMapSetup setup;
  setup.engine = engine;
  setup.styleURL = soundStyleURL_.isEmpty() ? defaultStyleURL() : soundStyleURL_;
  setup.tileHost = tileHost_;
  drawsStyle_ = engine == QLatin1String("mapboxgl");
  setup.failed = [this](const QString& reason) {
    QTimer::singleShot(0, view_, [this, reason] { fallBack(reason); });
  };
  return makeQuickMapCanvas(view_, setup, obstacle);
}

void MapEngine::startPlain() {
  canvas_ = makePlainMapCanvas(view_);
  drawsStyle_ = false;
}

void MapEngine::fallBack(const QString& reason) {
  stop();
  startPlain();
  note_ = QStringLiteral("Drawn without a map, on a plain background. Qt Quick: %1.").arg(reason);
  announce();
}

void MapEngine::announce() {
  canvas_->widget()->setGeometry(view_->rect());
  canvas_->setCamera(camera_);
  handlers_.started();
}

}  // namespace quorvelkit
