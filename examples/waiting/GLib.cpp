// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelPlatform/EventLoops/GLibEventLoop.h>

int main(int argc, char** argv) {
  const quorvelkit::GLibEventLoop mainQueue;
  GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
  int status = 1;
  requestTrip(argc, argv).onResult([&](const auto& result) {
    status = printTrip(result);
    g_main_loop_quit(loop);
  });
  g_main_loop_run(loop);
  g_main_loop_unref(loop);
  return status;
}
