// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"

#include <QtCore/QDirIterator>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>

#include <algorithm>

namespace {

bool usesOpenGL = false;

}  // namespace

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
// An OpenGL driver keeps memory to the end, and has been unloaded when the leak check asks whose
// that is: a process that draws with it goes unchecked. In the others what Qt and D-Bus keep is
// theirs; the growth of many views is watched by a test of its own.
extern "C" int __lsan_is_turned_off() { return usesOpenGL ? 1 : 0; }
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libQt5\nleak:libqoffscreen\nleak:libdbus-1\nleak:libfontconfig\n";
}
#elif __has_feature(thread_sanitizer)
// Qt and the OpenGL driver were built without it.
extern "C" const char* __tsan_default_options() { return "ignore_noninstrumented_modules=1"; }
#endif
#endif

namespace quorvelkit::test {

TestApplication::TestApplication(Screen screen) {
  usesOpenGL = usesOpenGL || screen == Screen::x11;
  qputenv("HOME", home_.path().toLocal8Bit());
  qputenv("XDG_CACHE_HOME", home_.path().toLocal8Bit());
  qputenv("XDG_RUNTIME_DIR", home_.path().toLocal8Bit());
  if (screen == Screen::none) {
    qunsetenv("DISPLAY");
    qputenv("QT_QPA_PLATFORM", "offscreen");
  } else {
    qputenv("QT_QPA_PLATFORM", "xcb");
    if (qEnvironmentVariableIsEmpty("DISPLAY")) startDisplayServer();
  }
  static int argumentCount = 1;
  static char name[] = "MapTests";
  static char* arguments[] = {name, nullptr};
  application_ = std::make_unique<QApplication>(argumentCount, arguments);
}

TestApplication::~TestApplication() {
  application_.reset();
  server_.terminate();
  server_.waitForFinished();
}

// Xvfb takes a display number of its own choice, writes it when it is ready, and ends with this
// process at the latest.
void TestApplication::startDisplayServer() {
  server_.setStandardErrorFile(QProcess::nullDevice());
  server_.start("setpriv", {"--pdeathsig", "TERM", "Xvfb", "-displayfd", "1", "-screen", "0",
                            "1280x1024x24", "-nolisten", "tcp", "-noreset"});
  EXPECT_TRUE(server_.waitForReadyRead()) << "Xvfb did not start (scripts/setup --map installs it)";
  qputenv("DISPLAY", ":" + server_.readLine().trimmed());
}

void TestApplication::hidePlugin(const QString& hidden) {
  const QDir mine(home_.filePath("plugins"));
  for (const QString& path : QCoreApplication::libraryPaths()) {
    QDirIterator plugins(path, QDir::Files, QDirIterator::Subdirectories);
    while (plugins.hasNext()) {
      const QString name = QDir(path).relativeFilePath(plugins.next());
      mine.mkpath(QFileInfo(name).path());
      if (name != hidden) QFile::link(plugins.filePath(), mine.filePath(name));
    }
  }
  QCoreApplication::setLibraryPaths({mine.path()});
}

QUrl TestApplication::file(const char* name, const QByteArray& text) const {
  QFile out(home_.filePath(name));
  EXPECT_TRUE(out.open(QIODevice::WriteOnly) && out.write(text) == text.size());
  return QUrl::fromLocalFile(out.fileName());
}

// A round counts for a second at most: a machine that stood still meanwhile decides nothing.
bool waitUntil(const std::function<bool()>& condition) {
  QElapsedTimer clock;
  clock.start();
  for (qint64 waited = 0; !condition(); waited += std::min<qint64>(clock.restart(), 1000)) {
    if (waited > 30000) return false;
    // The timer bounds the wait where no event comes.
    QTimer::singleShot(10, [] {});
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  return true;
}

QColor colorAt(QWidget& widget, QPointF place) {
  const QImage picture = widget.grab().toImage();
  const QPoint pixel = (place * picture.devicePixelRatio()).toPoint();
  return picture.valid(pixel) ? picture.pixelColor(pixel) : QColor();
}

bool isAlike(const QColor& a, const QColor& b) {
  return a.isValid() && std::abs(a.red() - b.red()) <= 4 && std::abs(a.green() - b.green()) <= 4 &&
         std::abs(a.blue() - b.blue()) <= 4;
}

testing::AssertionResult shows(MGLMapView& view, Coordinate position, const QColor& color,
                               QPointF offset) {
  QColor seen;
  if (waitUntil([&] {
        seen = colorAt(view, view.convertCoordinate(position) + offset);
        return isAlike(seen, color);
      })) {
    return testing::AssertionSuccess();
  }
  view.grab().save(QStringLiteral("MapTests-failure.png"));
  return testing::AssertionFailure()
         << "(" << position.latitude << ", " << position.longitude << ") is "
         << seen.name().toStdString() << " and not " << color.name().toStdString() << "; "
         << view.engineNote().toStdString() << " See MapTests-failure.png.";
}

QImage filledImage(const QSize& size, const QColor& color) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  return image;
}

QByteArray styleWithGround(const char* color) {
  return QByteArray(R"({"version":8,"sources":{},"layers":[{"id":"b","type":"background",)"
                    R"("paint":{"background-color":")") +
         color + R"("}}]})";
}

std::shared_ptr<MGLPointAnnotation> makeMarker(Coordinate coordinate, const char* title) {
  auto marker = std::make_shared<MGLPointAnnotation>();
  marker->setCoordinate(coordinate);
  marker->setTitle(title);
  return marker;
}

}  // namespace quorvelkit::test
