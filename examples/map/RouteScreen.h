// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "RouteLooks.h"

#include <QuorvelKit/QVViewController.h>

#include <functional>
#include <memory>

/// The library's screen with this application's looks: once the route is there, it gets its rim and
/// the map moves to it.
class RouteScreen : public quorvelkit::QVViewController {
 public:
  using QVViewController::QVViewController;
  using Handler = std::function<void(const quorvelkit::QVRouteResponse& response)>;

  void setTheme(const Theme& theme);
  /// Called for each answer, when the map shows it.
  void setHandler(Handler handler) { handler_ = std::move(handler); }
  /// Marks a place and moves the map there.
  void showTurn(quorvelkit::Coordinate place);

 protected:
  void didReceiveRoute(const std::shared_ptr<quorvelkit::QVRouteResponse>& response) override;

 private:
  void addRim();

  std::shared_ptr<RouteLooks> looks_;
  std::shared_ptr<quorvelkit::MGLPointAnnotation> turn_;
  Handler handler_;
};
