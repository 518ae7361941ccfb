// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QTimer>
#include <functional>

class QWidget;

/// Saves an image of a widget when the widget is complete. A map is drawn in steps while its data
/// arrive. Therefore the image is saved after it has been unchanged for 1.5 seconds plus the time
/// until its last change, which gives slow machines and large maps more time.
class Screenshot {
 public:
  /// Calls the handler once: with an empty text if the file was written, with an error otherwise.
  Screenshot(QWidget& widget, QString file, std::function<bool()> isReady,
             std::function<void(QString problem)> handler);

 private:
  void check();

  QWidget& widget_;
  const QString file_;
  const std::function<bool()> isReady_;
  const std::function<void(QString problem)> handler_;
  QTimer timer_;
  QElapsedTimer total_;
  qint64 lastChange_ = 0;
  QImage last_;
};
