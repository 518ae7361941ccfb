// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVViewController.h>

#include <QUrl>
#include <QWidget>

/// Opens a window that shows the route between two coordinates. The window exists as long as the
/// returned controller.
inline std::shared_ptr<quorvelkit::QVViewController> openRouteWindow(quorvelkit::Coordinate from,
                                                                     quorvelkit::Coordinate to,
                                                                     const QUrl& style) {
  auto screen = quorvelkit::QVViewController::make();
  screen->setOrigin(from);
  screen->setDestination(to);
  screen->mapview()->setStyleURL(style);
  screen->view()->resize(900, 640);
  screen->view()->show();
  return screen;
}
