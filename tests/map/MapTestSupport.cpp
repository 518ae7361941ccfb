// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

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

namespace {

// Starts Xvfb on a display number of its own choice, which it writes when it is ready.
int startDisplayServer() {
  std::array<int, 2> pipe{};
  if (::pipe(pipe.data()) != 0) return 0;
  const int server = ::fork();
  if (server == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::close(pipe[0]);
    // It tells there of numbers that others have.
    ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
    const std::string descriptor = std::to_string(pipe[1]);
    ::execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "1280x1024x24",
             "-nolisten", "tcp", "-noreset", nullptr);
    ::_exit(127);
  }
  ::close(pipe[1]);
  QByteArray number;
  char digit = 0;
  while (::read(pipe[0], &digit, 1) == 1 && digit != '\n') {
    number += digit;
  }
  ::close(pipe[0]);
  EXPECT_FALSE(number.isEmpty()) << "Xvfb did not start (scripts/setup --map installs it)";
  qputenv("DISPLAY", ":" + number);
  return server;
}

}  // namespace

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
    if (qEnvironmentVariableIsEmpty("DISPLAY")) server_ = startDisplayServer();
  }
  static int argumentCount = 1;
  static char name[] = "MapTests";
  static char* arguments[] = {name, nullptr};
  application_ = std::make_unique<QApplication>(argumentCount, arguments);
}

TestApplication::~TestApplication() {
  application_.reset();
  if (server_ <= 0) return;
  ::kill(server_, SIGTERM);
  ::waitpid(server_, nullptr, 0);
}

void TestApplication::hidePlugin(const QString& hidden) {
  const QDir mine(home_.filePath(QStringLiteral("plugins")));
  for (const QString& path : QCoreApplication::libraryPaths()) {
    const QDir theirs(path);
    for (const QString& kind : theirs.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
      mine.mkpath(kind);
      for (const QFileInfo& plugin : QDir(theirs.filePath(kind)).entryInfoList(QDir::Files)) {
        const QString name = kind + '/' + plugin.fileName();
        if (name != hidden) QFile::link(plugin.filePath(), mine.filePath(name));
      }
    }
  }
  QCoreApplication::setLibraryPaths({mine.path()});
}

bool waitUntil(const std::function<bool()>& condition) {
  QElapsedTimer clock;
  clock.start();
  while (!condition()) {
    if (clock.hasExpired(30000)) return false;
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

std::shared_ptr<MGLPolyline> makeLine(std::vector<Coordinate> coordinates) {
  return std::make_shared<MGLPolyline>(std::move(coordinates));
}

std::shared_ptr<MGLPointAnnotation> makeMarker(Coordinate coordinate, const char* title) {
  auto marker = std::make_shared<MGLPointAnnotation>();
  marker->setCoordinate(coordinate);
  marker->setTitle(title);
  return marker;
}

}  // namespace quorvelkit::test
