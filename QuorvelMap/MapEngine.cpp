// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MapEngine_p.h>
#include <QuorvelMap/PlainMapCanvas_p.h>
#include <QuorvelMap/QuickMapCanvas_p.h>

#include <QTimer>
#include <QWidget>
#include <cmath>
#include <utility>

namespace quorvelkit {

namespace {

QUrl defaultStyleURL() { return QUrl(QStringLiteral("qrc:/quorvelmap/style.json")); }

// The engine accepts a style only as a URL in a list with commas between the URLs. The comma of the
// data URL is therefore encoded.
QUrl dataURL(const QByteArray& style) {
  return QUrl(QStringLiteral("data:application/json;base64%2C") +
              QString::fromLatin1(style.toBase64()));
}

}  // namespace

MapEngine::MapEngine(QWidget* view, Handlers handlers)
    : view_(view), handlers_(std::move(handlers)) {}

MapEngine::~MapEngine() = default;

void MapEngine::start() {
  stop();
  QString failures;
  for (const char* const name : {"mapboxgl", "osm"}) {
    const QString engine = QString::fromLatin1(name);
    if (engine == QLatin1String("osm") && tileHost_.isEmpty()) continue;
    QString reason = unavailabilityReason(engine);
    if (reason.isEmpty()) canvas_ = startQtLocation(engine, &reason);
    if (canvas_) {
      note_ = QStringLiteral("Drawn by Qt Location's engine %1.").arg(engine);
      break;
    }
    failures += QStringLiteral(" %1: %2.").arg(engine, reason);
  }
  if (!canvas_) {
    startPlain();
    note_ = QStringLiteral("Drawn without a map, on a plain background.");
  }
  note_ += failures;
  initializeCanvas();
}

void MapEngine::stop() {
  if (!canvas_) return;
  camera_ = canvas_->camera();
  canvas_.reset();
  log_.reset();
}

void MapEngine::setCamera(const MapCamera& camera) {
  if (!std::isfinite(camera.center.latitude) || !std::isfinite(camera.center.longitude) ||
      !std::isfinite(camera.zoomLevel)) {
    return;
  }
  camera_ = camera;
  if (canvas_) canvas_->setCamera(camera);
}

void MapEngine::setStyleURL(const QUrl& url) {
  styleURL_ = url;
  style_.error.clear();
  if (url.isEmpty()) {
    styleLoader_.cancel();
    return useStyle({});
  }
  styleLoader_.load(url, [this](const LoadedStyle& style) { useStyle(style); });
}

void MapEngine::useStyle(const LoadedStyle& style) {
  style_ = style;
  if (canvas_) start();
}

void MapEngine::setTileHost(const QUrl& url, const QString& attribution) {
  tileHost_ = url;
  tileAttribution_ = attribution;
}

QString MapEngine::note() const {
  QString note = note_;
  const QString shownURL =
      styleURL_.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
  if (!style_.error.isEmpty())
    note += QStringLiteral(" The style %1 could not be used: %2.").arg(shownURL, style_.error);
  QStringList errors;
  if (log_) errors = style_.sourceErrors + log_->messages();
  if (!errors.isEmpty())
    note += QStringLiteral(" Errors in the style: %1.").arg(errors.join(QStringLiteral("; ")));
  return note;
}

std::unique_ptr<MapCanvas> MapEngine::startQtLocation(const QString& engine, QString* startError) {
  QuickMapSettings settings;
  settings.engine = engine;
  settings.styleURL = style_.text.isEmpty() ? defaultStyleURL() : dataURL(style_.text);
  settings.tileHost = tileHost_;
  settings.failed = [this](const QString& reason) {
    QTimer::singleShot(0, view_, [this, reason] { fallBack(reason); });
  };
  settings.cameraChanged = handlers_.cameraChanged;
  const bool drawsStyle = engine == QLatin1String("mapboxgl");
  if (drawsStyle) log_ = std::make_unique<EngineLog>();
  auto canvas = makeQuickMapCanvas(view_, settings, startError);
  if (!canvas) log_.reset();
  attributions_ = drawsStyle ? style_.attributions : QStringList(tileAttribution_);
  return canvas;
}

void MapEngine::startPlain() {
  canvas_ = makePlainMapCanvas(view_, handlers_.cameraChanged);
  attributions_.clear();
}

void MapEngine::fallBack(const QString& reason) {
  stop();
  startPlain();
  note_ = QStringLiteral("Drawn without a map, on a plain background. Qt Quick: %1.").arg(reason);
  initializeCanvas();
}

void MapEngine::initializeCanvas() {
  canvas_->widget()->setGeometry(view_->rect());
  canvas_->setCamera(camera_);
  handlers_.started();
}

}  // namespace quorvelkit
