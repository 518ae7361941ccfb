// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/EventLoops/QtEventLoop.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

// ThreadSanitizer does not see the mutexes of Qt.
extern "C" const char* __tsan_default_options() { return "ignore_noninstrumented_modules=1"; }

namespace quorvelkit::test {

struct Loop {
  static constexpr const char* name = "Qt";
  static constexpr bool nests = true, mayEndFirst = true;
  static constexpr std::optional<bool> passesExceptions = std::nullopt;
  using Adapter = QtEventLoop;

  std::unique_ptr<Adapter> attach() { return std::make_unique<Adapter>(); }
  void later(const std::function<void()>& function) { QTimer::singleShot(0, function); }
  void stop() { running.back()->quit(); }
  void run() {
    QEventLoop loop;
    running.push_back(&loop);
    loop.exec();
    running.pop_back();
  }

  int count = 0;
  QCoreApplication application{count, nullptr};
  std::vector<QEventLoop*> running;
};

}  // namespace quorvelkit::test
