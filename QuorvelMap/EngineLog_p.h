// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

namespace quorvelkit {

/// Collects the warnings and errors that the Mapbox GL engine writes to Qt's log. These messages do
/// not name a map view: if several objects exist, each collects the messages of all engines.
///
/// The constructor of the first object installs a Qt message handler, which stays to the end of the
/// process. It removes the engine's messages from the log and passes all others to the previous
/// handler. A handler that is installed later receives the engine's messages, and this class does
/// not. Create and destroy objects on the GUI thread.
class EngineLog {
 public:
  EngineLog();
  EngineLog(const EngineLog&) = delete;
  EngineLog& operator=(const EngineLog&) = delete;
  ~EngineLog();

  /// At most ten different messages and the number of the others. Contains one message for all
  /// failed tiles of a source. Thread-safe.
  QStringList messages() const;

 private:
  static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text);
  void add(const QString& message);

  QStringList messages_;
  int omittedCount_ = 0;
};

}  // namespace quorvelkit
