// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MapCanvas_p.h>

#include <QString>
#include <QUrl>
#include <functional>
#include <memory>

namespace quorvelkit {

struct QuickMapSettings {
  /// The name of the Qt Location plugin: "mapboxgl" or "osm".
  QString engine;
  /// Must not contain a comma.
  QUrl styleURL;
  QUrl tileHost;
  /// Called if the scene graph fails after the start. Must not destroy the canvas.
  std::function<void(const QString& reason)> failed;
  CameraChangedHandler cameraChanged;
};

/// Makes a canvas that draws with an engine of Qt Location in a QQuickWidget. The parent must be in
/// a window. Returns null and sets `reason` if the engine does not start.
std::unique_ptr<MapCanvas> makeQuickMapCanvas(QWidget* parent, const QuickMapSettings& settings,
                                              QString* reason);

/// Returns why an engine of Qt Location cannot run on this machine, or an empty string if no reason
/// is known.
QString unavailabilityReason(const QString& engine);

}  // namespace quorvelkit
