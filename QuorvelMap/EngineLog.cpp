// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/EngineLog_p.h>

#include <QRegularExpression>
#include <memory>
#include <mutex>
#include <vector>

namespace quorvelkit {

namespace {

constexpr int maximumComplaints = 10;

// Shared with every thread that logs, to the end of the process.
struct Logs {
  std::mutex mutex;
  std::vector<EngineLog*> open;
  QtMessageHandler next = nullptr;
  // [ ERROR ]  "{thread}[Style]: Failed to load sprite: HTTP status code 404"
  const QRegularExpression line{
      QString::fromLatin1("^\\[ (\\w+) \\]\\s+\"\\{[^}]*\\}\\[\\w+\\]: (.*)\"\\s*$"),
      QRegularExpression::DotMatchesEverythingOption};
  const QRegularExpression tile{QString::fromLatin1(R"(^Failed to load tile \S+ for source)")};
};

Logs& logs() {
  static Logs* const all = std::make_unique<Logs>().release();
  return *all;
}

}  // namespace

EngineLog::EngineLog() {
  if (logs().next == nullptr) {
    // Other threads may log meanwhile: Qt's own handler has their lines until the next one is
    // known.
    logs().next = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handle);
  }
  const std::lock_guard lock(logs().mutex);
  logs().open.push_back(this);
}

EngineLog::~EngineLog() {
  const std::lock_guard lock(logs().mutex);
  std::erase(logs().open, this);
}

QStringList EngineLog::complaints() const {
  const std::lock_guard lock(logs().mutex);
  if (left_ == 0) return complaints_;
  return complaints_ + QStringList(QStringLiteral("and %1 more").arg(left_));
}

void EngineLog::take(const QString& complaint) {
  if (complaints_.contains(complaint)) return;
  if (complaints_.size() < maximumComplaints) {
    complaints_ += complaint;
  } else {
    ++left_;
  }
}

void EngineLog::handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  const QRegularExpressionMatch match = logs().line.match(text);
  if (!match.hasMatch()) return logs().next(type, context, text);
  const QString severity = match.captured(1);
  if (severity != QLatin1String("WARNING") && severity != QLatin1String("ERROR")) return;
  const QString complaint =
      match.captured(2).replace(logs().tile, QStringLiteral("Failed to load tiles of source"));
  const std::lock_guard lock(logs().mutex);
  for (EngineLog* const log : logs().open)
    log->take(complaint);
}

}  // namespace quorvelkit
