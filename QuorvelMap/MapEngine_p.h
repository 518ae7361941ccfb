// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/EngineLog_p.h>
#include <QuorvelMap/MapCanvas_p.h>
#include <QuorvelMap/StyleLoader_p.h>

#include <QString>
#include <QStringList>
#include <QUrl>
#include <functional>
#include <memory>

class QWidget;

namespace quorvelkit {

/// Starts and stops the engine of one map view. Uses the first engine that works on this machine
/// and replaces it by the plain painter if it fails later. Keeps the style and the camera when the
/// engine changes. Use it on the GUI thread.
class MapEngine {
 public:
  struct Handlers {
    /// Called when a new canvas exists. The canvas has the camera, but no lines, and is hidden.
    std::function<void()> started;
    CameraChangedHandler cameraChanged;
  };

  /// The view is the parent of the canvas and must outlive this object.
  MapEngine(QWidget* view, Handlers handlers);
  MapEngine(const MapEngine&) = delete;
  MapEngine& operator=(const MapEngine&) = delete;
  ~MapEngine();

  /// Null if no engine runs.
  MapCanvas* canvas() const { return canvas_.get(); }
  /// The view must be in its window.
  void start();
  void stop();

  MapCamera camera() const { return canvas_ ? canvas_->camera() : camera_; }
  /// Has no effect if a value is not finite.
  void setCamera(const MapCamera& camera);

  QUrl styleURL() const { return styleURL_; }
  /// Loads the style. If an engine runs then, restarts it.
  void setStyleURL(const QUrl& url);
  QUrl tileHost() const { return tileHost_; }
  void setTileHost(const QUrl& url, const QString& attribution);

  /// The attributions of the visible map data, each as HTML.
  QStringList attributions() const { return attributions_; }
  /// The running engine, the reasons why the preferred engines do not run, and the errors of the
  /// style.
  QString note() const;

 private:
  std::unique_ptr<MapCanvas> startQtLocation(const QString& engine, QString* startError);
  void startPlain();
  void useStyle(const LoadedStyle& style);
  void fallBack(const QString& reason);
  void initializeCanvas();

  QWidget* const view_;
  const Handlers handlers_;
  MapCamera camera_;
  QUrl styleURL_;
  LoadedStyle style_;
  QUrl tileHost_;
  QString tileAttribution_;
  QStringList attributions_;
  QString note_ = QStringLiteral("No engine was started.");
  StyleLoader styleLoader_;
  std::unique_ptr<EngineLog> log_;
  std::unique_ptr<MapCanvas> canvas_;
};

}  // namespace quorvelkit
