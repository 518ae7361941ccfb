// SPDX-License-Identifier: Apache-2.0
#include "RouteLooks.h"
#include "Screenshot.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVViewController.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QStringList>
#include <QUrl>
#include <QWidget>
#include <iostream>
#include <memory>
#include <optional>

using namespace quorvelkit;

namespace {

constexpr int usageError = 2;

std::optional<Coordinate> parseCoordinate(const QString& text) {
  const QStringList parts = text.split(',');
  if (parts.size() != 2) return std::nullopt;
  bool isLatitude = false;
  bool isLongitude = false;
  const Coordinate coordinate{parts[0].toDouble(&isLatitude), parts[1].toDouble(&isLongitude)};
  if (!isLatitude || !isLongitude) return std::nullopt;
  return coordinate;
}

}  // namespace

int main(int argc, char** argv) {
  // Qt would take --style for its own: it gets to see the program's name only.
  QStringList arguments;
  for (int i = 0; i < argc; ++i)
    arguments += QString::fromLocal8Bit(argv[i]);
  int one = 1;
  const QApplication application(one, argv);
  QCommandLineParser options;
  options.setApplicationDescription("Shows the route between two places on a map.");
  options.addHelpOption();
  options.addOptions({{"from", "Where the route begins.", "LAT,LON"},
                      {"to", "Where it ends.", "LAT,LON"},
                      {"backend", "The backend to use instead of the built-in one.", "URL"},
                      {"style", "The map's Mapbox style; a plain ground without one.", "URL"},
                      {"width", "Width of the window.", "N", "900"},
                      {"height", "Height of the window.", "N", "640"},
                      {"screenshot", "Save a picture of the window, and end.", "FILE.png"}});
  options.process(arguments);
  const auto from = parseCoordinate(options.value("from"));
  const auto to = parseCoordinate(options.value("to"));
  const int width = options.value("width").toInt();
  const int height = options.value("height").toInt();
  if (!from || !to || width <= 0 || height <= 0) {
    std::cerr << "quorvel-map: needs --from LAT,LON and --to LAT,LON (see --help)\n";
    return usageError;
  }
  if (options.isSet("backend")) QVBackendless::setBaseURL(options.value("backend").toStdString());

  const auto looks = std::make_shared<RouteLooks>();
  const auto screen = QVViewController::make();
  screen->setOrigin(*from);
  screen->setDestination(*to);
  screen->setDelegate(looks);
  screen->mapview()->setStyleURL(QUrl(options.value("style")));
  QWidget& window = *screen->view();
  window.setWindowTitle("Route");
  window.resize(width, height);
  window.show();
  std::optional<Screenshot> screenshot;
  if (options.isSet("screenshot")) {
    screenshot.emplace(
        window, options.value("screenshot"), [&] { return looks->hasRoute(); },
        [&](const QString& problem) {
          if (!problem.isEmpty()) std::cerr << "quorvel-map: " << problem.toStdString() << '\n';
          QApplication::exit(problem.isEmpty() ? 0 : 1);
        });
  }
  const int status = QApplication::exec();
  std::cout << screen->mapview()->engineNote().toStdString() << '\n';
  return status;
}
