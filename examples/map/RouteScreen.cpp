// SPDX-License-Identifier: Apache-2.0
#include "RouteScreen.h"

#include <algorithm>

using namespace quorvelkit;

namespace {

constexpr double turnZoomLevel = 16;

}  // namespace

void RouteScreen::setTheme(const Theme& theme) {
  routeDelegate_ = std::make_shared<RouteDelegate>(theme);
  setDelegate(routeDelegate_);
  mapview()->setPalette(theme.palette);
}

void RouteScreen::didReceiveRoute(const std::shared_ptr<QVRouteResponse>& response) {
  if (mapview() != nullptr) addOutline();
  if (handler_) handler_(*response);
}

// Later lines are drawn above earlier ones. Therefore this function removes all annotations, adds
// the outline, and adds the others again.
void RouteScreen::addOutline() {
  const auto drawn = mapview()->annotations();
  const auto last = drawn.empty() ? nullptr : drawn.back();
  const auto line = std::dynamic_pointer_cast<const MGLPolyline>(last);
  if (!line) return;
  mapview()->removeAnnotations(drawn);
  mapview()->addAnnotations({routeDelegate_->makeOutline(*line)});
  mapview()->addAnnotations(drawn);
  mapview()->showAnnotations();
}

void RouteScreen::showTurn(Coordinate coordinate) {
  MGLMapView* const map = mapview();
  if (map == nullptr) return;
  map->removeAnnotations({turnMarker_});
  turnMarker_ = routeDelegate_->makeTurnMarker(coordinate);
  map->addAnnotations({turnMarker_});
  map->setZoomLevel(std::max(map->zoomLevel(), turnZoomLevel));
  map->setCenterCoordinate(coordinate);
}
