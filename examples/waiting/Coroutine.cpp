// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <coroutine>
#include <exception>

// A coroutine that starts at once. Libraries for coroutines have such a type.
struct Task {
  struct promise_type {
    Task get_return_object() { return {}; }
    std::suspend_never initial_suspend() noexcept { return {}; }
    std::suspend_never final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { std::terminate(); }
  };
};

Task run(int argc, char** argv, int& status) {
  status = printTrip(co_await requestTrip(argc, argv));
  quorvelkit::MainQueue::main().stop();
}

int main(int argc, char** argv) {
  int status = 1;
  run(argc, argv, status);
  quorvelkit::MainQueue::main().run();
  return status;
}
