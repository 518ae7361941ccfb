// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/EngineLog_p.h>

#include <QRegularExpression>
#include <memory>
#include <mutex>
#include <vector>

namespace quorvelkit {

namespace {

constexpr int maximumMessages = 10;

// Used by all threads that log. Never destroyed.
struct LogRegistry {
  std::mutex mutex;
  std::vector<EngineLog*> logs;
  QtMessageHandler nextHandler = nullptr;
  // Example: [ ERROR ]  "{thread}[Style]: Failed to load sprite: HTTP status code 404"
  const QRegularExpression lineFormat{
      QString::fromLatin1("^\\[ (\\w+) \\]\\s+\"\\{[^}]*\\}\\[\\w+\\]: (.*)\"\\s*$"),
      QRegularExpression::DotMatchesEverythingOption};
  const QRegularExpression tileFailure{
      QString::fromLatin1(R"(^Failed to load tile \S+ for source)")};
};

LogRegistry& registry() {
  static LogRegistry* const instance = std::make_unique<LogRegistry>().release();
  return *instance;
}

}  // namespace

EngineLog::EngineLog() {
  if (registry().nextHandler == nullptr) {
    // Another thread may log before the previous handler is known. Therefore Qt's default handler
    // is installed first.
    registry().nextHandler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handle);
  }
  const std::lock_guard lock(registry().mutex);
  registry().logs.push_back(this);
}

EngineLog::~EngineLog() {
  const std::lock_guard lock(registry().mutex);
  std::erase(registry().logs, this);
}

QStringList EngineLog::messages() const {
  const std::lock_guard lock(registry().mutex);
  if (omittedCount_ == 0) return messages_;
  return messages_ + QStringList(QStringLiteral("and %1 more").arg(omittedCount_));
}

void EngineLog::add(const QString& message) {
  if (messages_.contains(message)) return;
  if (messages_.size() < maximumMessages) {
    messages_ += message;
  } else {
    ++omittedCount_;
  }
}

void EngineLog::handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  const QRegularExpressionMatch match = registry().lineFormat.match(text);
  if (!match.hasMatch()) return registry().nextHandler(type, context, text);
  const QString severity = match.captured(1);
  if (severity != QLatin1String("WARNING") && severity != QLatin1String("ERROR")) return;
  const QString message = match.captured(2).replace(
      registry().tileFailure, QStringLiteral("Failed to load tiles of source"));
  const std::lock_guard lock(registry().mutex);
  for (EngineLog* const log : registry().logs)
    log->add(message);
}

}  // namespace quorvelkit
