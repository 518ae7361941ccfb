// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"

#include <QtCore/QDirIterator>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>

#include <algorithm>
#include <iostream>

namespace {

bool usesOpenGL = false;

}  // namespace

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
// The OpenGL driver does not free all memory, and it is unloaded before the leak check, which
// therefore cannot suppress its leaks. The check is off in processes that use OpenGL. Leaks of Qt
// and D-Bus are suppressed. A test of MGLMapView checks that many views do not use more and more
// memory.
extern "C" int __lsan_is_turned_off() { return usesOpenGL ? 1 : 0; }
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libQt5\nleak:libqoffscreen\nleak:libdbus-1\nleak:libfontconfig\n";
}
#elif __has_feature(thread_sanitizer)
// Qt and the OpenGL driver are not instrumented.
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

// Xvfb selects a free display number and prints it when it is ready. It ends with this process at
// the latest.
void TestApplication::startDisplayServer() {
  server_.setStandardErrorFile(QProcess::nullDevice());
  server_.start("setpriv", {"--pdeathsig", "TERM", "Xvfb", "-displayfd", "1", "-screen", "0",
                            "1280x1024x24", "-nolisten", "tcp", "-noreset"});
  EXPECT_TRUE(server_.waitForReadyRead()) << "Xvfb did not start (scripts/setup --map installs it)";
  qputenv("DISPLAY", ":" + server_.readLine().trimmed());
}

void TestApplication::hidePlugin(const QString& hidden) {
  const QDir visible(home_.filePath("plugins"));
  for (const QString& path : QCoreApplication::libraryPaths()) {
    QDirIterator plugins(path, QDir::Files, QDirIterator::Subdirectories);
    while (plugins.hasNext()) {
      const QString name = QDir(path).relativeFilePath(plugins.next());
      visible.mkpath(QFileInfo(name).path());
      if (name != hidden) QFile::link(plugins.filePath(), visible.filePath(name));
    }
  }
  QCoreApplication::setLibraryPaths({visible.path()});
}

QUrl TestApplication::file(const char* name, const QByteArray& text) const {
  QFile out(home_.filePath(name));
  EXPECT_TRUE(out.open(QIODevice::WriteOnly) && out.write(text) == text.size());
  return QUrl::fromLocalFile(out.fileName());
}

// Counts at most one second per iteration, so that a suspended process does not cause a time-out.
bool waitUntil(const std::function<bool()>& condition) {
  QElapsedTimer clock;
  clock.start();
  for (qint64 waited = 0; !condition(); waited += std::min<qint64>(clock.restart(), 1000)) {
    if (waited > 60000) return false;
    // The timer ends the wait if there is no event.
    QTimer::singleShot(10, [] {});
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  return true;
}

QColor colorAt(QWidget& widget, QPointF point) {
  const QImage picture = widget.grab().toImage();
  const QPoint pixel = (point * picture.devicePixelRatio()).toPoint();
  return picture.valid(pixel) ? picture.pixelColor(pixel) : QColor();
}

bool isAlike(const QColor& a, const QColor& b) {
  return a.isValid() && std::abs(a.red() - b.red()) <= 4 && std::abs(a.green() - b.green()) <= 4 &&
         std::abs(a.blue() - b.blue()) <= 4;
}

testing::AssertionResult shows(MGLMapView& view, Coordinate coordinate, const QColor& color,
                               QPointF offset) {
  QColor seen;
  if (waitUntil([&] {
        seen = colorAt(view, view.convertCoordinate(coordinate) + offset);
        return isAlike(seen, color);
      })) {
    return testing::AssertionSuccess();
  }
  view.grab().save(QStringLiteral("MapTests-failure.png"));
  return testing::AssertionFailure()
         << "(" << coordinate.latitude << ", " << coordinate.longitude << ") is "
         << seen.name().toStdString() << ", expected " << color.name().toStdString() << "; "
         << view.engineNote().toStdString() << " See MapTests-failure.png.";
}

QImage filledImage(const QSize& size, const QColor& color) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  return image;
}

QByteArray styleWithBackground(const char* color) {
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

RouteView::RouteView() : MGLMapView(QRect(0, 0, 400, 300)) {
  setTintColor(QColor(0, 0, 200));
  setZoomLevel(13);
  addAnnotations({makeLine({{-0.01, -0.01}, {0, 0}, {0, 0.01}}), makeMarker({0, 0}, "origin")});
}

void RouteView::expectRoute(const char* note, const char* reason) {
  EXPECT_TRUE(shows(*this, {0, 0.005}, QColor(0, 0, 200)));
  EXPECT_TRUE(shows(*this, {0, 0}, pinColor, {0, -12}));
  EXPECT_TRUE(engineNote().startsWith(note) && engineNote().contains(reason))
      << engineNote().toStdString();
}

void RouteView::expectNote(const char* text) {
  EXPECT_TRUE(waitUntil([&] {
    grab();
    return engineNote().contains(text);
  })) << text
      << " / " << engineNote().toStdString();
}

OutputCapture::OutputCapture() {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
    if (text.startsWith("QXcbIntegration: ")) return;
    std::cerr << text.toStdString() << '\n';
  });
}

std::string OutputCapture::text() const {
  qInstallMessageHandler(nullptr);
  return testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
}

}  // namespace quorvelkit::test
