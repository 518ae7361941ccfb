// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QPalette>
#include <QUrl>

/// Colors of the window and of the route, and the map's style where the user names none.
struct Theme {
  QPalette palette;
  QColor line;
  QColor rim;
  QColor turn;
  QUrl style;
};

Theme lightTheme();
Theme darkTheme();
