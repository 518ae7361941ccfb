// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>

#include <gtest/gtest.h>

#include <latch>
#include <thread>

namespace quorvelkit {
namespace {

// Every thread reads one shared value and writes to copies of it.
TEST(JSONThreadTest, ThreadsReadOneValueAndWriteToCopies) {
  constexpr int threads = 4;
  const JSON document = JSON::parse(
      R"({"points":[{"lat":1.5,"name":"first"},{"lat":2.5,"name":"second"}],"n":{"m":[1,2,3]}})");
  JSON changed = document;
  changed.set({"n", "m", 0}, "changed");
  for (const JSON& shared : {document, changed}) {
    const std::string before = shared.description();
    std::latch start(threads);
    std::vector<std::thread> running;
    for (int id = 0; id < threads; ++id) {
      running.emplace_back([&, id] {
        start.arrive_and_wait();
        for (int i = 0; i < 200; ++i) {
          EXPECT_EQ((shared[{"points", 1, "name"}].stringValue()), "second");
          EXPECT_EQ(shared["points"].arrayValue().size(), 2U);
          EXPECT_FALSE(shared["missing and long enough for the heap"].exists());
          EXPECT_EQ(shared, shared);
          JSON own = shared;
          JSON other = own["n"];
          own.set({"n", "m", 2}, id);
          own.set({"points", 0, "lat"}, own["n"]);
          other.set("m", i);
          EXPECT_EQ((own[{"n", "m", 2}]), id);
          EXPECT_EQ((own[{"points", 0, "lat", "m", 2}]), id);
        }
      });
    }
    for (std::thread& thread : running)
      thread.join();
    EXPECT_EQ(shared.description(), before);
  }
}

}  // namespace
}  // namespace quorvelkit
