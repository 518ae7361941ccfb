// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelKit/Calls/QVBoostAsioCall.h>

#include <boost/asio/bind_executor.hpp>
#include <boost/asio/io_context.hpp>

namespace asio = boost::asio;

int main(int argc, char** argv) {
  asio::io_context context;
  const quorvelkit::BoostAsioEventLoop mainQueue(context);
  int status = 1;
  const auto print = [&](const auto& result) { status = printTrip(result); };
  quorvelkit::boostAsyncResult(requestTrip(argc, argv), asio::bind_executor(context, print));
  context.run();
  return status;
}
