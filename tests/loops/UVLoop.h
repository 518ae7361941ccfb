// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/EventLoops/UVEventLoop.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace quorvelkit::test {

struct Loop {
  static constexpr const char* name = "UV";
  static constexpr bool nests = false, mayEndFirst = false;
  static constexpr std::optional<bool> passesExceptions = false;
  using Adapter = UVEventLoop;

  Loop() {
    uv_loop_init(&loop);
    uv_async_init(&loop, &keepsRunning, nullptr);
    uv_timer_init(&loop, &timer);
    timer.data = this;
  }
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;
  ~Loop() {
    uv_close(reinterpret_cast<uv_handle_t*>(&keepsRunning), nullptr);
    uv_close(reinterpret_cast<uv_handle_t*>(&timer), nullptr);
    uv_run(&loop, UV_RUN_DEFAULT);
    EXPECT_EQ(uv_loop_close(&loop), 0) << "A handle is not closed.";
  }

  std::unique_ptr<Adapter> attach() { return std::make_unique<Adapter>(&loop); }
  void later(std::function<void()> function) {
    event = std::move(function);
    uv_timer_start(
        &timer,
        [](uv_timer_t* given) { std::exchange(static_cast<Loop*>(given->data)->event, {})(); }, 0,
        0);
  }
  void stop() { uv_stop(&loop); }
  void run() { uv_run(&loop, UV_RUN_DEFAULT); }

  uv_loop_t loop;
  uv_async_t keepsRunning;
  uv_timer_t timer;
  std::function<void()> event;
};

}  // namespace quorvelkit::test
