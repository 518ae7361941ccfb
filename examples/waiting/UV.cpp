// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelPlatform/EventLoops/UVEventLoop.h>

#include <optional>

using quorvelkit::UVEventLoop;

int main(int argc, char** argv) {
  uv_loop_t* const loop = uv_default_loop();
  std::optional<UVEventLoop> mainQueue(std::in_place, loop, UVEventLoop::Handle::referenced);
  int status = 1;
  requestTrip(argc, argv).onResult([&](const auto& result) {
    status = printTrip(result);
    mainQueue.reset();  // Nothing else keeps the loop running.
  });
  uv_run(loop, UV_RUN_DEFAULT);
  uv_loop_close(loop);
  return status;
}
