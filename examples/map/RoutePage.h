// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "RouteScreen.h"
#include "TurnList.h"

#include <QLabel>
#include <QPointer>
#include <QSplitter>
#include <QUrl>
#include <memory>

/// A window with a route on a map and the list of its turns beside the map, or below it if the
/// window is narrow. Shows a message while it waits for the route and if there is none.
class RoutePage : public QSplitter {
 public:
  RoutePage(quorvelkit::Coordinate from, quorvelkit::Coordinate to, const Theme& theme);

  /// An empty URL means the style of the theme.
  void setMapStyle(const QUrl& style);
  /// Requests the route. Call it once.
  void load();

  /// True if the response has arrived or the request cannot be sent.
  bool isFinished() const { return isFinished_; }
  bool hasRoute() const { return hasRoute_; }
  RouteScreen& screen() const { return *screen_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showScreen();
  void arrange();
  void showAnswer(const quorvelkit::QVRouteResponse& response);
  void showNoRoute(const QString& reason);

  const Theme theme_;
  const std::shared_ptr<RouteScreen> screen_;
  // Deleted when the map is shown.
  const QPointer<QLabel> waiting_;
  TurnList* const turns_;
  bool isFinished_ = false;
  bool hasRoute_ = false;
};
