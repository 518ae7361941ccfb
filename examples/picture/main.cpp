// SPDX-License-Identifier: Apache-2.0
#include "RoutePicture.h"

#include <unistd.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <iostream>

using namespace quorvelkit;

namespace {

constexpr int usageError = 2;

struct Options {
  QString file;
  QUrl style;
  QSize size;
};

int fail(const QString& problem, int status = 1) {
  std::cerr << "quorvel-picture: " << problem.toStdString() << '\n';
  return status;
}

// Exits the process after --help. Needs no display.
std::optional<Options> parseOptions(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "Draws a route on a map. Reads the route from standard input, as `quorvel route --geojson` "
      "prints it.");
  parser.addHelpOption();
  parser.addPositionalArgument("FILE", "Picture to write: FILE.png or FILE.svg.");
  parser.addOptions({{"style", "Mapbox style of the map. Default: a plain background.", "URL"},
                     {"width", "Width of the picture.", "N", "900"},
                     {"height", "Height of the picture.", "N", "640"}});
  parser.process(QCoreApplication::arguments());
  const QSize size(parser.value("width").toInt(), parser.value("height").toInt());
  const QString file = parser.positionalArguments().value(0);
  const bool isKnown =
      file.endsWith(".png", Qt::CaseInsensitive) || file.endsWith(".svg", Qt::CaseInsensitive);
  if (!isKnown || size.isEmpty()) return std::nullopt;
  return Options{file, QUrl(parser.value("style")), size};
}

// Without a display, starts the program again on a virtual one, because the map needs OpenGL.
// Returns if there is no xvfb-run; then the route is drawn on a plain background.
void useVirtualDisplay(char** argv) {
  for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    if (qEnvironmentVariableIsSet(name)) return;
  }
  std::vector<std::string> words{"xvfb-run", "-a", "-s", "-screen 0 1280x1024x24"};
  for (char** argument = argv; *argument != nullptr; ++argument)
    words.emplace_back(*argument);
  std::string self(4096, '\0');
  const ssize_t size = readlink("/proc/self/exe", self.data(), self.size());
  if (size <= 0) return;
  words[4] = self.substr(0, static_cast<std::size_t>(size));
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  qputenv("QT_QPA_PLATFORM", "offscreen");
}

// Returns the line of a GeoJSON feature, empty if it has none.
RoutePicture::Line readRoute() {
  QFile input;
  if (!input.open(stdin, QIODevice::ReadOnly)) return {};
  const QJsonObject feature = QJsonDocument::fromJson(input.readAll()).object();
  RoutePicture::Line line;
  for (const auto& position : feature["geometry"].toObject()["coordinates"].toArray()) {
    const QJsonArray pair = position.toArray();
    if (!pair[0].isDouble() || !pair[1].isDouble()) return {};
    line.push_back({pair[1].toDouble(), pair[0].toDouble()});
  }
  return line;
}

}  // namespace

int main(int argc, char** argv) {
  const auto options = parseOptions(argc, argv);
  if (!options) return fail("needs FILE.png or FILE.svg (see --help)", usageError);
  useVirtualDisplay(argv);
  // Qt prints a warning without this folder.
  const QTemporaryDir folder;
  if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
    qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
  QCoreApplication::setAttribute(Qt::AA_DisableShaderDiskCache);
  // QApplication gets only the program name, because it would read --style as its own option.
  int one = 1;
  const QApplication application(one, argv);
  const RoutePicture::Line line = readRoute();
  if (line.empty()) return fail("standard input is not a GeoJSON feature with a line");
  RoutePicture picture(line, options->style, options->size);
  picture.save(options->file, [&](const QString& problem) {
    if (!problem.isEmpty()) fail(problem);
    QApplication::exit(problem.isEmpty() ? 0 : 1);
  });
  const int status = QApplication::exec();
  const QString note = picture.engineNote();
  if (note.contains("plain background") || note.contains("could not be used"))
    std::cerr << "quorvel-picture: " << note.toStdString() << '\n';
  return status;
}
