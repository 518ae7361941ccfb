// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelKit/Calls/QVAsioCall.h>

#include <asio/bind_executor.hpp>
#include <asio/io_context.hpp>

int main(int argc, char** argv) {
  asio::io_context context;
  const quorvelkit::AsioEventLoop mainQueue(context);
  int status = 1;
  const auto print = [&](const auto& result) { status = printTrip(result); };
  quorvelkit::asyncResult(requestTrip(argc, argv), asio::bind_executor(context, print));
  context.run();
  return status;
}
