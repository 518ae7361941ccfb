// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "examples/map/RouteDelegate.h"
#include "examples/map/Screenshot.h"

#include <QuorvelMap/MGLMapView.h>

#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// Draws a route with its ends on a map, into a PNG file or an SVG file. In an SVG file the map is
/// an image, the route and its ends are shapes.
class RoutePicture {
 public:
  using Line = std::vector<quorvelkit::Coordinate>;

  RoutePicture(Line line, const QUrl& style, const QSize& size);
  /// Calls the handler once: with an empty text if the file was written, with an error otherwise.
  void save(const QString& file, std::function<void(QString problem)> handler);
  QString engineNote() const { return map_.engineNote(); }

 private:
  void addAnnotations();
  /// Writes the image of the map and the shapes above it. Returns an error.
  QString saveSVG(const QString& file, const QString& mapFile) const;
  QString shapes() const;

  const Line line_;
  quorvelkit::MGLMapView map_;
  std::shared_ptr<RouteDelegate> delegate_;
  QTemporaryDir folder_;
  std::optional<Screenshot> screenshot_;
};
