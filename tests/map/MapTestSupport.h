// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MGLPolyline.h>

#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace quorvelkit::test {

/// The application object of one test. With a screen it runs on an X server with software OpenGL,
/// started for it alone where DISPLAY names none; without one Qt draws in memory and has no OpenGL.
class TestApplication {
 public:
  enum class Screen { x11, none };

  explicit TestApplication(Screen screen = Screen::x11);
  ~TestApplication();

  /// From now on Qt loads plugins only from a folder that lacks the named one
  /// ("sqldrivers/libqsqlite.so").
  void hidePlugin(const QString& hidden);

  /// A fresh folder for the test's files; HOME and the caches are in it.
  QString folder() const { return home_.path(); }

 private:
  QTemporaryDir home_;
  int server_ = 0;
  std::unique_ptr<QApplication> application_;
};

/// Lets events run until the condition holds; false after a generous time.
bool waitUntil(const std::function<bool()>& condition);

/// What the widget shows at a place, and whether two colours are alike to within 4 of 255.
QColor colorAt(QWidget& widget, QPointF place);
bool isAlike(const QColor& a, const QColor& b);

/// Waits until the view shows the colour at the position, moved by an offset in pixels; on a
/// time-out says what is there and leaves the picture in a file.
testing::AssertionResult shows(MGLMapView& view, Coordinate position, const QColor& color,
                               QPointF offset = {});

std::shared_ptr<MGLPolyline> makeLine(std::vector<Coordinate> coordinates);
std::shared_ptr<MGLPointAnnotation> makeMarker(Coordinate coordinate, const char* title);

inline const QColor plainGround(0xec, 0xe9, 0xe2);

}  // namespace quorvelkit::test
