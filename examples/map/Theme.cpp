// SPDX-License-Identifier: Apache-2.0
#include "Theme.h"

#include <QApplication>

namespace {

QPalette palette(const QColor& window, const QColor& base, const QColor& text,
                 const QColor& highlight) {
  QPalette result(base, window);
  result.setColor(QPalette::Base, base);
  result.setColor(QPalette::AlternateBase, window);
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    result.setColor(role, text);
  result.setColor(QPalette::Highlight, highlight);
  return result;
}

}  // namespace

Theme lightTheme() {
  return {palette("#f2f2f0", "#ffffff", "#202020", "#2f6fd6"), "#3d86f5", "#123f9c", "#f0a020",
          QUrl()};
}

Theme darkTheme() {
  return {palette("#1d2127", "#262b33", "#e4e6e9", "#3d86f5"), "#6cb2ff", "#0d3a78", "#ffc04d",
          QUrl("qrc:/quorvel-map/dark.json")};
}
