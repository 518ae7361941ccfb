// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelKit/Calls/QVStartUp.h>

int main(int argc, char** argv) {
  using namespace quorvelkit;
  if (argc > 1) QVBackendless::setBaseURL(argv[1]);
  std::stop_source stop;  // stop.request_stop() cancels the start.
  QVCallOptions options;
  options.deadline = std::chrono::seconds(30);
  options.retry = QVRetryPolicy();
  options.stopToken = stop.get_token();
  if (const auto error = QVStartUp::loadConfiguration(options).wait().error()) {
    std::cerr << *error << '\n';
    return 1;
  }
  return printTrip(requestTrip(argc, argv).wait());
}
