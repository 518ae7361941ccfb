// SPDX-License-Identifier: Apache-2.0
#include "RoutePage.h"

#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVRouteRequest.h>

#include <QLabel>
#include <QPointer>

using namespace quorvelkit;

namespace {

constexpr int panelWidth = 300;
constexpr int narrow = 640;
constexpr QMargins endMargins(40, 40, 40, 40);

// The server's own words, if it said why; the error's otherwise.
std::string reasonOf(const QVRouteResponse& response) {
  const auto message = response.json() ? (*response.json())["message"].string() : std::nullopt;
  return message.value_or(response.error()->localizedDescription());
}

}  // namespace

RoutePage::RoutePage(Coordinate from, Coordinate to, const Theme& theme)
    : theme_(theme),
      screen_(QVViewController::make<RouteScreen>()),
      waiting_(new QLabel("Connecting …", this)),
      turns_(new TurnList([this](Coordinate place) { screen_->showTurn(place); })) {
  setPalette(theme.palette);
  setAutoFillBackground(true);
  setChildrenCollapsible(false);
  waiting_->setAlignment(Qt::AlignCenter);
  addWidget(waiting_);
  addWidget(turns_);
  turns_->showMessage("Looking for a route …");
  screen_->setOrigin(from);
  screen_->setDestination(to);
  screen_->setTheme(theme);
  screen_->setHandler([page = QPointer<RoutePage>(this)](const QVRouteResponse& response) {
    if (page) page->showAnswer(response);
  });
  setMapStyle(QUrl());
}

void RoutePage::setMapStyle(const QUrl& style) {
  screen_->mapview()->setStyleURL(style.isEmpty() ? theme_.style : style);
}

// A request that has no address is never answered, so that is looked at first.
void RoutePage::load() {
  QVBaseService::loadConfiguration([page = QPointer<RoutePage>(this)] {
    if (page) page->showScreen();
  });
}

void RoutePage::showScreen() {
  const auto configuration = QVConfiguration::cachedResponse();
  if (!configuration || configuration->error()) return showNoRoute("the server cannot be reached");
  if (!QVRouteRequest(screen_->origin(), screen_->destination()).url())
    return showNoRoute("the server names no routing service");
  // The first call of view() sends the request.
  delete replaceWidget(0, screen_->view());
  arrange();
  screen_->mapview()->setVisibleCoordinates({screen_->origin(), screen_->destination()},
                                            endMargins);
}

void RoutePage::showAnswer(const QVRouteResponse& response) {
  if (response.error()) return showNoRoute(QString::fromStdString(reasonOf(response)));
  if (!response.route() || response.route()->points().empty())
    return showNoRoute("there is none between these places");
  turns_->showRoute(*response.route());
  hasRoute_ = true;
  isFinished_ = true;
}

void RoutePage::showNoRoute(const QString& reason) {
  turns_->showMessage("No route: " + reason + (reason.endsWith('.') ? "" : "."));
  isFinished_ = true;
}

void RoutePage::arrange() {
  const bool isNarrow = width() < narrow;
  setOrientation(isNarrow ? Qt::Vertical : Qt::Horizontal);
  const int length = isNarrow ? height() : width();
  const int list = isNarrow ? height() / 3 : panelWidth;
  setSizes({length - list, list});
}

void RoutePage::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  arrange();
}
