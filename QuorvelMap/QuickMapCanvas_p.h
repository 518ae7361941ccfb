// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MapCanvas_p.h>

#include <QString>
#include <QUrl>
#include <functional>
#include <memory>

namespace quorvelkit {

/// What a Qt Location engine is started with.
struct QuickMapSetup {
  /// The plugin's name: "mapboxgl" or "osm".
  QString engine;
  /// Without a comma.
  QUrl styleURL;
  QUrl tileHost;
  /// Called when the scene graph fails later on; the canvas must not be destroyed inside.
  std::function<void(const QString& reason)> failed;
  CanvasMovedHandler moved;
};

/// A Qt Location map in a Qt Quick widget. The parent is in a window already. Gives nothing, and
/// the reason, when the engine does not start.
std::unique_ptr<MapCanvas> makeQuickMapCanvas(QWidget* parent, const QuickMapSetup& setup,
                                              QString* reason);

/// Why a Qt Location engine cannot work on this machine; empty when nothing speaks against it.
QString obstacleTo(const QString& engine);

}  // namespace quorvelkit
