// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/EventLoops/GLibEventLoop.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quorvelkit::test {

struct Loop {
  static constexpr const char* name = "GLib";
  static constexpr bool nests = true, mayEndFirst = true;
  static constexpr std::optional<bool> passesExceptions = false;
  using Adapter = GLibEventLoop;

  Loop() = default;
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;
  ~Loop() { g_main_context_unref(context); }

  std::unique_ptr<Adapter> attach() { return std::make_unique<Adapter>(context); }
  void later(std::function<void()> function) {
    GSource* const timer = g_timeout_source_new(0);
    auto data = std::make_unique<std::function<void()>>(std::move(function));
    g_source_set_callback(
        timer,
        [](gpointer given) { return (*static_cast<std::function<void()>*>(given))(), FALSE; },
        data.release(), [](gpointer given) { delete static_cast<std::function<void()>*>(given); });
    g_source_attach(timer, context);
    g_source_unref(timer);
  }
  void stop() { g_main_loop_quit(running.back()); }
  void run() {
    GMainLoop* const loop = running.emplace_back(g_main_loop_new(context, FALSE));
    g_main_loop_run(loop);
    running.pop_back();
    g_main_loop_unref(loop);
  }

  GMainContext* const context = g_main_context_new();
  std::vector<GMainLoop*> running;
};

}  // namespace quorvelkit::test
