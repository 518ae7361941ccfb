// SPDX-License-Identifier: Apache-2.0
#include "Screenshot.h"

#include <QPixmap>
#include <QWidget>
#include <utility>

namespace {

constexpr int lookEveryMilliseconds = 100;
constexpr int finishedAfterMilliseconds = 1500;
constexpr int giveUpAfterMilliseconds = 60000;

}  // namespace

Screenshot::Screenshot(QWidget& widget, QString file, std::function<bool()> isReady,
                       std::function<void(QString problem)> handler)
    : widget_(widget),
      file_(std::move(file)),
      isReady_(std::move(isReady)),
      handler_(std::move(handler)) {
  QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
  total_.start();
  timer_.start(lookEveryMilliseconds);
}

void Screenshot::look() {
  const bool isLate = total_.hasExpired(giveUpAfterMilliseconds);
  if (!isReady_()) {
    if (!isLate) return;
    timer_.stop();
    handler_(QStringLiteral("the route was not there in time"));
    return;
  }
  const QImage picture = widget_.grab().toImage();
  if (picture != last_) {
    last_ = picture;
    lastChange_ = total_.elapsed();
  }
  if (total_.elapsed() < 2 * lastChange_ + finishedAfterMilliseconds && !isLate) return;
  timer_.stop();
  handler_(picture.save(file_) ? QString() : QStringLiteral("%1 cannot be written").arg(file_));
}
