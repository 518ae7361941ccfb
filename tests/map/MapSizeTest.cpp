// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"
#include "tests/kit/FakeServer.h"

#include <QuorvelKit/QVRouteWidget.h>

#include <QDockWidget>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QScrollArea>
#include <QSplitter>
#include <QTextEdit>

namespace quorvelkit::test {

namespace {

// Adds a map and other widgets to a window.
void arrange(const std::string& kind, QMainWindow& window, QWidget* map) {
  auto* const middle = new QWidget;
  window.setCentralWidget(middle);
  if (kind == "form") {
    auto* const form = new QFormLayout(middle);
    form->addRow("From", new QLineEdit);
    form->addRow("Route", map);
    form->addRow("To", new QLineEdit);
  } else if (kind == "box") {
    auto* const box = new QVBoxLayout(middle);
    box->addWidget(new QLabel("Route"));
    box->addWidget(map);
    box->addWidget(new QLineEdit);
  } else if (kind == "splitter") {
    auto* const splitter = new QSplitter;
    splitter->addWidget(new QTextEdit);
    splitter->addWidget(map);
    window.setCentralWidget(splitter);
  } else if (kind == "dock") {
    auto* const dock = new QDockWidget;
    dock->setWidget(map);
    window.setCentralWidget(new QTextEdit);
    window.addDockWidget(Qt::RightDockWidgetArea, dock);
  } else {
    auto* const area = new QScrollArea;
    area->setWidgetResizable(kind == "resizable scroll area");
    area->setWidget(map);
    window.setCentralWidget(area);
  }
}

// The server must start before the application object, because its queue must outlive it.
TEST(MapSizeTest, MapsFillTheSpaceInLayouts) {
  const FakeServer server;
  const TestApplication application(TestApplication::Screen::none);
  const auto screen = QVViewController::make();
  // The minimum size of a map in a window of 700 x 600 pixels.
  const std::pair<const char*, QSize> arrangements[] = {
      {"form", {500, 400}}, {"box", {600, 400}},         {"splitter", {300, 500}},
      {"dock", {300, 500}}, {"scroll area", {480, 360}}, {"resizable scroll area", {600, 500}}};
  for (const auto& [arrangement, minimum] : arrangements) {
    auto* const route = new QVRouteWidget;
    for (const auto& controller : {screen, route->controller()}) {
      controller->setOrigin({1, 2});
      controller->setDestination({3, 4});
    }
    const std::pair<const char*, QWidget*> maps[] = {
        {"map", new MGLMapView}, {"screen", screen->view()}, {"widget", route}};
    for (const auto& [kind, map] : maps) {
      SCOPED_TRACE(std::string(kind) + " in a " + arrangement);
      QMainWindow window;
      arrange(arrangement, window, map);
      window.resize(700, 600);
      window.show();
      EXPECT_GE(map->width(), minimum.width());
      EXPECT_GE(map->height(), minimum.height());
      window.resize(1, 1);
      EXPECT_GE(map->width(), 160);
      EXPECT_GE(map->height(), 120);
    }
  }
}

}  // namespace

}  // namespace quorvelkit::test
