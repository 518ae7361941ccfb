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

// Adds a map and other widgets to a window of 700 x 600 pixels.
struct Arrangement {
  const char* name;
  void (*arrange)(QMainWindow& window, QWidget* map);
  // The minimum size of the map in that window.
  QSize minimum;
};

template <class Layout, class Add>
void fill(QMainWindow& window, Add add) {
  auto* const middle = new QWidget;
  add(*new Layout(middle));
  window.setCentralWidget(middle);
}

const Arrangement arrangements[] = {{"form",
                                     [](QMainWindow& window, QWidget* map) {
                                       fill<QFormLayout>(window, [&](QFormLayout& form) {
                                         form.addRow("From", new QLineEdit);
                                         form.addRow("Route", map);
                                         form.addRow("To", new QLineEdit);
                                       });
                                     },
                                     {500, 400}},
                                    {"box",
                                     [](QMainWindow& window, QWidget* map) {
                                       fill<QVBoxLayout>(window, [&](QVBoxLayout& box) {
                                         box.addWidget(new QLabel("Route"));
                                         box.addWidget(map);
                                         box.addWidget(new QLineEdit);
                                       });
                                     },
                                     {600, 400}},
                                    {"grid",
                                     [](QMainWindow& window, QWidget* map) {
                                       fill<QGridLayout>(window, [&](QGridLayout& grid) {
                                         grid.addWidget(new QLabel("Route"), 0, 0);
                                         grid.addWidget(map, 0, 1);
                                         grid.addWidget(new QLineEdit, 1, 1);
                                       });
                                     },
                                     {500, 400}},
                                    {"splitter",
                                     [](QMainWindow& window, QWidget* map) {
                                       auto* const splitter = new QSplitter;
                                       splitter->addWidget(new QTextEdit);
                                       splitter->addWidget(map);
                                       window.setCentralWidget(splitter);
                                     },
                                     {300, 500}},
                                    {"dock",
                                     [](QMainWindow& window, QWidget* map) {
                                       auto* const dock = new QDockWidget;
                                       dock->setWidget(map);
                                       window.setCentralWidget(new QTextEdit);
                                       window.addDockWidget(Qt::RightDockWidgetArea, dock);
                                     },
                                     {300, 500}},
                                    {"scroll area",
                                     [](QMainWindow& window, QWidget* map) {
                                       auto* const area = new QScrollArea;
                                       area->setWidget(map);
                                       window.setCentralWidget(area);
                                     },
                                     {480, 360}},
                                    {"resizable scroll area",
                                     [](QMainWindow& window, QWidget* map) {
                                       auto* const area = new QScrollArea;
                                       area->setWidgetResizable(true);
                                       area->setWidget(map);
                                       window.setCentralWidget(area);
                                     },
                                     {600, 500}}};

// The server must start before the application object, because its queue must outlive it.
TEST(MapSizeTest, MapsFillTheSpaceInLayouts) {
  const FakeServer server;
  const TestApplication application(TestApplication::Screen::none);
  const auto screen = QVViewController::make();
  for (const auto& [name, arrange, minimum] : arrangements) {
    auto* const route = new QVRouteWidget;
    for (const auto& controller : {screen, route->controller()}) {
      controller->setOrigin({1, 2});
      controller->setDestination({3, 4});
    }
    const std::pair<const char*, QWidget*> maps[] = {
        {"map", new MGLMapView}, {"screen", screen->view()}, {"widget", route}};
    for (const auto& [kind, map] : maps) {
      SCOPED_TRACE(std::string(kind) + " in a " + name);
      QMainWindow window;
      arrange(window, map);
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
