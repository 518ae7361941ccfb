// SPDX-License-Identifier: Apache-2.0
// Host names that cannot be resolved, or not yet.
#include "tests/support/Call.h"
#include "tests/support/Resolver.h"
#include "tests/support/TestServer.h"

#include <gtest/gtest.h>

namespace quorvelkit {
namespace {

using namespace quorvelkit::test;

TEST(ResolverTest, RefusedAddressDoesNotChangeNextError) {
  const TestServer server([](const auto& request, auto& connection) {
    if (request.target == "/good") return connection.answer(200);
    connection.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nno size\r\n");
  });
  const auto session = URLSession::make();
  const std::string twoAddresses = "http://second.test:" + std::to_string(server.port());
  EXPECT_EQ(send(requestFor(twoAddresses + "/good"), session).code(), 0);
  EXPECT_EQ(send(requestFor(server.url("/bad")), session).code(), URLError::cannotParseResponse);
}

TEST(ResolverTest, CancelledTaskDoesNotWaitForResolver) {
  const Call call(requestFor("http://slow.test/"));
  call.task->resume();
  slowName->asked.get();
  call.task->cancel();
  EXPECT_EQ(call.result().code(), URLError::cancelled);
  const TestServer server([](const auto&, auto& connection) { connection.answer(200, "ok"); });
  EXPECT_EQ(send(requestFor(server.url())).body(), "ok");
  slowName->mayAnswer.set(true);
}

}  // namespace
}  // namespace quorvelkit
