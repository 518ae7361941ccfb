// SPDX-License-Identifier: Apache-2.0
#include "Screenshot.h"

#include <QPixmap>
#include <QWidget>
#include <utility>

namespace {

constexpr int checkIntervalMilliseconds = 100;
constexpr int minimumUnchangedMilliseconds = 1500;
constexpr int timeoutMilliseconds = 60000;

}  // namespace

Screenshot::Screenshot(QWidget& widget, QString file, std::function<bool()> isReady,
                       std::function<void(QString problem)> handler)
    : widget_(widget),
      file_(std::move(file)),
      isReady_(std::move(isReady)),
      handler_(std::move(handler)) {
  QObject::connect(&timer_, &QTimer::timeout, [this] { check(); });
  total_.start();
  timer_.start(checkIntervalMilliseconds);
}

void Screenshot::check() {
  const bool isTimedOut = total_.hasExpired(timeoutMilliseconds);
  if (!isReady_()) {
    if (!isTimedOut) return;
    timer_.stop();
    handler_(QStringLiteral("the route did not arrive in time"));
    return;
  }
  const QImage picture = widget_.grab().toImage();
  if (picture != last_) {
    last_ = picture;
    lastChange_ = total_.elapsed();
  }
  if (total_.elapsed() < 2 * lastChange_ + minimumUnchangedMilliseconds && !isTimedOut) return;
  timer_.stop();
  handler_(picture.save(file_) ? QString() : QStringLiteral("%1 cannot be written").arg(file_));
}
