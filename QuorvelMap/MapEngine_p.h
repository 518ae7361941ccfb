// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/EngineLog_p.h>
#include <QuorvelMap/MapCanvas_p.h>
#include <QuorvelMap/StyleLoader_p.h>

#include <QString>
#include <QUrl>
#include <functional>
#include <memory>

class QWidget;

namespace quorvelkit {

/// The engine of one map view: chooses the first that works on this machine, starts and stops it,
/// goes over to another one when it fails, and keeps style and camera from one to the next.
class MapEngine {
 public:
  struct Handlers {
    /// A new canvas is there, empty and hidden, with the camera in place.
    std::function<void()> started;
    /// The canvas has another camera, or has drawn.
    std::function<void()> moved;
  };

  /// The view is the canvas's parent and outlives this object.
  MapEngine(QWidget* view, Handlers handlers);
  MapEngine(const MapEngine&) = delete;
  MapEngine& operator=(const MapEngine&) = delete;
  ~MapEngine();

  /// Null while no engine runs.
  MapCanvas* canvas() const { return canvas_.get(); }
  /// The view is in its window already.
  void start();
  void stop();

  MapCamera camera() const { return canvas_ ? canvas_->camera() : camera_; }
  void setCamera(const MapCamera& camera);

  /// Once the style is read, an engine that runs is started anew.
  QUrl styleURL() const { return styleURL_; }
  void setStyleURL(const QUrl& url);
  QUrl tileHost() const { return tileHost_; }
  void setTileHost(const QUrl& url, const QString& attribution);

  /// What the data in sight want said about them, as HTML.
  QString attribution() const { return attribution_; }
  /// Which engine draws, what was missing, and what failed in the style.
  QString note() const;

 private:
  std::unique_ptr<MapCanvas> startQuick(const QString& engine, QString* obstacle);
  void startPlain();
  void useStyle(const LoadedStyle& style);
  void fallBack(const QString& reason);
  void announce();

  QWidget* const view_;
  const Handlers handlers_;
  MapCamera camera_;
  QUrl styleURL_;
  LoadedStyle style_;
  QUrl tileHost_;
  QString tileAttribution_;
  QString attribution_;
  QString note_ = QStringLiteral("Nothing is drawn yet.");
  StyleLoader styleLoader_;
  std::unique_ptr<EngineLog> log_;
  std::unique_ptr<MapCanvas> canvas_;
};

}  // namespace quorvelkit
