// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QPalette>
#include <QUrl>

/// The colors of the window and of the route, and the default style of the map.
struct Theme {
  QPalette palette;
  QColor line;
  QColor outline;
  QColor turn;
  QUrl style;
};

Theme lightTheme();
Theme darkTheme();
