// SPDX-License-Identifier: Apache-2.0
#include "RoutePage.h"
#include "Screenshot.h"
#include "Theme.h"

#include <QuorvelKit/QVBackendless.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QStringList>
#include <QUrl>
#include <iostream>
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

struct Options {
  Coordinate from;
  Coordinate to;
  QString backend;
  QUrl style;
  bool isDark = false;
  QSize size;
  QString screenshot;
};

// Returns nothing if the arguments are wrong. Exits the process after --help. Needs no display.
std::optional<Options> parseOptions(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCommandLineParser parser;
  parser.setApplicationDescription("Shows the route between two coordinates on a map.");
  parser.addHelpOption();
  parser.addOptions({{"from", "Start of the route.", "LAT,LON"},
                     {"to", "End of the route.", "LAT,LON"},
                     {"backend", "Backend server. Default: the built-in URL.", "URL"},
                     {"style", "Mapbox style of the map. Default: a plain background.", "URL"},
                     {"dark", "Use dark colors."},
                     {"width", "Width of the window.", "N", "900"},
                     {"height", "Height of the window.", "N", "640"},
                     {"screenshot", "Save an image of the window, then exit.", "FILE.png"}});
  parser.process(QCoreApplication::arguments());
  const auto from = parseCoordinate(parser.value("from"));
  const auto to = parseCoordinate(parser.value("to"));
  const QSize size(parser.value("width").toInt(), parser.value("height").toInt());
  if (!from || !to || size.isEmpty()) {
    std::cerr << "quorvel-map: needs --from LAT,LON and --to LAT,LON (see --help)\n";
    return std::nullopt;
  }
  const QString backend = parser.value("backend");
  if (parser.isSet("backend") && !QVBackendless::isUsableBaseURL(backend.toStdString())) {
    std::cerr << "quorvel-map: --backend needs a URL with http or https and a host, as in "
                 "http://127.0.0.1:8080\n";
    return std::nullopt;
  }
  return Options{*from,
                 *to,
                 backend,
                 QUrl(parser.value("style")),
                 parser.isSet("dark"),
                 size,
                 parser.value("screenshot")};
}

}  // namespace

int main(int argc, char** argv) {
  const auto options = parseOptions(argc, argv);
  if (!options) return usageError;
  if (!options->backend.isEmpty()) QVBackendless::setBaseURL(options->backend.toStdString());

  // QApplication gets only the program name, because it would read --style as its own option.
  int one = 1;
  const QApplication application(one, argv);
  QApplication::setStyle("fusion");
  const Theme theme = options->isDark ? darkTheme() : lightTheme();
  QApplication::setPalette(theme.palette);
  RoutePage page(options->from, options->to, theme);
  if (!options->style.isEmpty()) page.setMapStyle(options->style);
  page.setWindowTitle("Route");
  page.resize(options->size);
  page.show();
  page.load();
  std::optional<Screenshot> screenshot;
  if (!options->screenshot.isEmpty()) {
    screenshot.emplace(
        page, options->screenshot, [&] { return page.isFinished(); },
        [&](QString problem) {
          if (problem.isEmpty() && !page.hasRoute()) problem = "there is no route";
          if (!problem.isEmpty()) std::cerr << "quorvel-map: " << problem.toStdString() << '\n';
          QApplication::exit(problem.isEmpty() ? 0 : 1);
        });
  }
  const int status = QApplication::exec();
  std::cout << page.screen().mapview()->engineNote().toStdString() << '\n';
  return status;
}
