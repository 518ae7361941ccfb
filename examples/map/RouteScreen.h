// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "RouteDelegate.h"

#include <QuorvelKit/QVViewController.h>

#include <functional>
#include <memory>

/// A view controller that adds an outline to the route and moves the map to it.
class RouteScreen : public quorvelkit::QVViewController {
 public:
  using QVViewController::QVViewController;
  using Handler = std::function<void(const quorvelkit::QVRouteResponse& response)>;

  void setTheme(const Theme& theme);
  /// Called for each response, after its route was added to the map.
  void setHandler(Handler handler) { handler_ = std::move(handler); }
  /// Shows a ring at the coordinate and moves the map to it.
  void showTurn(quorvelkit::Coordinate coordinate);

 protected:
  void didReceiveRoute(const std::shared_ptr<quorvelkit::QVRouteResponse>& response) override;

 private:
  void addOutline();

  std::shared_ptr<RouteDelegate> routeDelegate_;
  std::shared_ptr<quorvelkit::MGLPointAnnotation> turnMarker_;
  Handler handler_;
};
