// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "RouteScreen.h"
#include "TurnList.h"

#include <QSplitter>
#include <QUrl>
#include <memory>

/// A window with a route on a map and its turns beside it, below it where the window is narrow. It
/// says what is going on: that it waits for the route, or why there is none.
class RoutePage : public QSplitter {
 public:
  RoutePage(quorvelkit::Coordinate from, quorvelkit::Coordinate to, const Theme& theme);

  /// The map's style; the theme's own when empty.
  void setMapStyle(const QUrl& style);
  /// Asks for the route. Call it once.
  void load();

  /// The answer is there, or it is known that none will come.
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
  QLabel* const waiting_;
  TurnList* const turns_;
  bool isFinished_ = false;
  bool hasRoute_ = false;
};
