// SPDX-License-Identifier: Apache-2.0
#include "RoutePage.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVRouteRequest.h>

#include <memory>

using namespace quorvelkit;

namespace {

constexpr int panelWidth = 300;
constexpr int narrowWidth = 640;
constexpr QMargins endMargins(40, 40, 40, 40);

// Returns the message of the server, or the text of the error if the server sent none.
std::string errorText(const QVRouteResponse& response) {
  const auto message = response.json() ? (*response.json())["message"].string() : std::nullopt;
  return message.value_or(response.error()->localizedDescription());
}

}  // namespace

RoutePage::RoutePage(Coordinate from, Coordinate to, const Theme& theme)
    : theme_(theme),
      screen_(QVViewController::make<RouteScreen>()),
      waiting_(new QLabel("Connecting …", this)),
      turns_(new TurnList([this](Coordinate turn) { screen_->showTurn(turn); })) {
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

// Loads the configuration first, because a request without a root URL gets no response. Without a
// usable URL of the backend, the handler of loadConfiguration() would not run.
void RoutePage::load() {
  if (!QVBackendless::isUsableBaseURL()) return showNoRoute("the URL of the server is not usable");
  QVBaseService::loadConfiguration([page = QPointer<RoutePage>(this)] {
    if (page) page->showScreen();
  });
}

void RoutePage::showScreen() {
  const auto configuration = QVConfiguration::cachedResponse();
  if (!configuration || configuration->error()) return showNoRoute("the server cannot be reached");
  if (!QVRouteRequest(screen_->origin(), screen_->destination()).url())
    return showNoRoute("the server has no routing service");
  // The first call of view() sends the request.
  const std::unique_ptr<QWidget> replaced(replaceWidget(0, screen_->view()));
  arrange();
  screen_->mapview()->setVisibleCoordinates({screen_->origin(), screen_->destination()},
                                            endMargins);
}

void RoutePage::showAnswer(const QVRouteResponse& response) {
  if (response.error()) return showNoRoute(QString::fromStdString(errorText(response)));
  if (!response.route() || response.route()->points().empty())
    return showNoRoute("none exists between these coordinates");
  turns_->showRoute(*response.route());
  hasRoute_ = true;
  isFinished_ = true;
}

void RoutePage::showNoRoute(const QString& reason) {
  if (waiting_) waiting_->clear();
  turns_->showMessage("No route: " + reason + (reason.endsWith('.') ? "" : "."));
  isFinished_ = true;
}

void RoutePage::arrange() {
  const bool isNarrow = width() < narrowWidth;
  setOrientation(isNarrow ? Qt::Vertical : Qt::Horizontal);
  const int length = isNarrow ? height() : width();
  const int list = isNarrow ? height() / 3 : panelWidth;
  setSizes({length - list, list});
}

void RoutePage::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  arrange();
}
