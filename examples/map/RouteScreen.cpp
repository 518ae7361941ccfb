// SPDX-License-Identifier: Apache-2.0
#include "RouteScreen.h"

#include <QMargins>
#include <algorithm>

using namespace quorvelkit;

namespace {

// Space for the markers with their titles at the ends of the line.
constexpr QMargins routeMargins(70, 90, 70, 40);
constexpr double turnZoomLevel = 16;

}  // namespace

void RouteScreen::setTheme(const Theme& theme) {
  looks_ = std::make_shared<RouteLooks>(theme);
  setDelegate(looks_);
  mapview()->setPalette(theme.palette);
}

void RouteScreen::didReceiveRoute(const std::shared_ptr<QVRouteResponse>& response) {
  if (mapview() != nullptr) addRim();
  if (handler_) handler_(*response);
}

// What is added later is drawn above, so the rim goes first and the rest is added again.
void RouteScreen::addRim() {
  const auto drawn = mapview()->annotations();
  const auto last = drawn.empty() ? nullptr : drawn.back();
  const auto line = std::dynamic_pointer_cast<const MGLPolyline>(last);
  if (!line) return;
  mapview()->removeAnnotations(drawn);
  mapview()->addAnnotations({looks_->makeRim(*line)});
  mapview()->addAnnotations(drawn);
  mapview()->setVisibleCoordinates(line->coordinates(), routeMargins);
}

void RouteScreen::showTurn(Coordinate place) {
  MGLMapView* const map = mapview();
  if (map == nullptr) return;
  map->removeAnnotations({turn_});
  turn_ = looks_->makeTurn(place);
  map->addAnnotations({turn_});
  map->setZoomLevel(std::max(map->zoomLevel(), turnZoomLevel));
  map->setCenterCoordinate(place);
}
