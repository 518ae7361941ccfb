// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/EventLoops/PollEventLoop.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quorvelkit::test {

struct Loop {
  static constexpr const char* name = "Poll";
  static constexpr bool nests = true, mayEndFirst = true;
  static constexpr std::optional<bool> passesExceptions = true;

  using Descriptors = std::vector<PollEventLoop*>;
  struct Adapter {
    explicit Adapter(std::shared_ptr<Descriptors> descriptors) : polled(std::move(descriptors)) {
      polled->push_back(&events);
    }
    ~Adapter() { std::erase(*polled, &events); }
    PollEventLoop events;
    std::shared_ptr<Descriptors> polled;
  };

  std::unique_ptr<Adapter> attach() { return std::make_unique<Adapter>(polled); }
  void later(std::function<void()> function) { events.push_back(std::move(function)); }
  void stop() { isStopped = true; }
  void run() {
    for (isStopped = false; !isStopped;) {
      const Descriptors current = *polled;
      std::vector<pollfd> entries;
      for (const PollEventLoop* adapter : current)
        entries.push_back(adapter->pollable());
      poll(entries.data(), entries.size(), events.empty() ? -1 : 0);
      for (std::size_t i = 0; i < entries.size(); ++i) {
        const bool isPolled = std::ranges::count(*polled, current[i]) == 1;
        if (isPolled && entries[i].revents != 0) current[i]->handle();
      }
      if (events.empty()) continue;
      const auto event = std::move(events.front());
      events.pop_front();
      event();
    }
    isStopped = false;
  }

  std::shared_ptr<Descriptors> polled = std::make_shared<Descriptors>();
  std::deque<std::function<void()>> events;
  bool isStopped = false;
};

}  // namespace quorvelkit::test
