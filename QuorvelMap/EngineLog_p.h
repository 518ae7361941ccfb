// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

namespace quorvelkit {

/// Collects, while it lives, what the Mapbox GL engine complains about. The engine writes to Qt's
/// log and names no view: with several at work each collects the lines of all.
///
/// The first one puts a message handler in front of the one that is there, for good: lines of the
/// engine stop at it, all others pass. A handler that is installed later gets them all.
class EngineLog {
 public:
  EngineLog();
  EngineLog(const EngineLog&) = delete;
  EngineLog& operator=(const EngineLog&) = delete;
  ~EngineLog();

  /// Each complaint once, the first ten; one for all tiles of a source.
  QStringList complaints() const;

 private:
  static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text);
  void take(const QString& complaint);

  QStringList complaints_;
  int left_ = 0;
};

}  // namespace quorvelkit
