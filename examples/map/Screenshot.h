// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QTimer>
#include <functional>

class QWidget;

/// Saves what a widget shows once that is finished: maps fill up as their data come in, so the
/// picture is taken when it has not changed for a while, and for as long as it took until then: a
/// slow machine, or a large map, gets more time.
class Screenshot {
 public:
  /// Calls the handler once with the reason why there is no picture, empty when there is one.
  Screenshot(QWidget& widget, QString file, std::function<bool()> isReady,
             std::function<void(QString problem)> handler);

 private:
  void look();

  QWidget& widget_;
  const QString file_;
  const std::function<bool()> isReady_;
  const std::function<void(QString problem)> handler_;
  QTimer timer_;
  QElapsedTimer total_;
  qint64 lastChange_ = 0;
  QImage last_;
};
