// SPDX-License-Identifier: Apache-2.0
// Large documents on a small stack, and a document that several threads use.
#include <QuorvelKit/JSON/JSON.h>

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <latch>
#include <thread>

namespace quorvelkit {
namespace {

// Runs a function on a thread with a stack of 256 KiB.
void onSmallStack(const std::function<void()>& block) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  ASSERT_EQ(pthread_setattr_default_np(&attributes), 0);
  std::thread(block).join();
  pthread_attr_destroy(&attributes);
}

constexpr int depth = 50'000;

// Returns a leaf inside alternating arrays and maps.
JSON nested(const Value& leaf, int levels = depth) {
  Value value = leaf;
  for (int i = 0; i < levels; ++i)
    value = i % 2 == 0 ? Value(ValueArray{std::move(value), 1})
                       : Value(ValueMap{{"k", std::move(value)}});
  return value;
}

TEST(JSONDeepTest, DeepValuesNeedNoStack) {
  onSmallStack([] {
    const JSON a = nested("leaf");
    JSON b = nested("leaf");
    EXPECT_EQ(a, b);
    EXPECT_NE(a, nested("other"));
    const JSON copy = b;
    std::vector<JSONKey> path;
    for (int i = 0; i < depth; ++i)
      path.emplace_back(i % 2 == 0 ? JSONKey("k") : JSONKey(0));
    EXPECT_EQ(b[path].stringValue(), "leaf");
    b.set(path, "changed");
    EXPECT_EQ(b[path].stringValue(), "changed");
    EXPECT_EQ(copy[path].stringValue(), "leaf");
    const std::optional<Data> bytes = b.rawData();
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->view().starts_with(R"({"k":[{"k":)"));
    EXPECT_GT(bytes->size(), std::size_t{depth});
    // The size of the indentation is quadratic in the depth, so a smaller depth.
    EXPECT_TRUE(nested("leaf", 1000).description().starts_with("{\n  \"k\": [\n    {\n"));
  });
}

TEST(JSONDeepTest, ExtremeDocumentsAreParsedOrRejected) {
  onSmallStack([] {
    const std::size_t many = 200'000;
    for (const char* opening : {"[", "{\"a\":", "[{\"a\":"}) {
      std::string text;
      while (text.size() < many)
        text += opening;
      EXPECT_EQ(JSON::parse(text).type(), JSON::Type::null);
    }
    const std::string deepest = std::string(512, '[') + std::string(512, ']');
    EXPECT_EQ(JSON::parse(deepest).type(), JSON::Type::array);
    EXPECT_EQ(JSON::parse("[" + deepest + "]").type(), JSON::Type::null);

    std::string members = "{";
    for (std::size_t i = 0; i < many; ++i)
      members += "\"" + std::to_string(i) + "\":1,";
    const JSON map = JSON::parse(members + "\"0\":2}");
    EXPECT_EQ(map.size(), many);
    EXPECT_EQ(map["0"], 2);
    EXPECT_EQ(map[std::to_string(many - 1)], 1);

    const std::string longText(100'000'000, 'x');
    EXPECT_EQ(JSON::parse("[\"" + longText + "\"]")[0].view().text(), longText);
    const std::string zeros(many, '0'), nines(many, '9');
    for (const std::string& number : {nines, "-" + nines, "1e" + nines, zeros, "1." + zeros + "x"})
      EXPECT_EQ(JSON::parse("[" + number + "]").type(), JSON::Type::null);
    for (const std::string& number : {"0." + zeros + "1", "-0e" + nines, "1e-" + nines})
      EXPECT_EQ(JSON::parse("[" + number + "]")[0], 0);
    EXPECT_EQ(JSON::parse("[1" + zeros + "e-" + std::to_string(many) + "]")[0], 1);
    EXPECT_EQ(JSON::parse("{\"" + nines + "\":1}")[nines], 1);
  });
}

TEST(JSONDeepTest, WideAndDeepDocumentsAreCopiedAndWritten) {
  onSmallStack([] {
    std::string wide = "[";
    for (int i = 0; i < depth; ++i)
      wide += "[],{},";
    const std::string deepest = std::string(511, '[') + "7" + std::string(511, ']');
    for (const std::string& text : {wide + "\"end\"]", "[" + deepest + "]"}) {
      const JSON json = JSON::parse(text);
      JSON copy = json;
      copy.set(0, 1);
      EXPECT_NE(copy, json);
      EXPECT_EQ(JSON::parse(json.description()), json);
      EXPECT_EQ(json.rawString(TextEncoding::utf8, JSONWritingOptions::none), text);
      copy.set(0, json[0]);
      EXPECT_EQ(copy, json);
    }
    for (std::size_t i = 0; i < deepest.size(); ++i)
      ASSERT_EQ(JSON::parse(deepest.substr(0, i)).type(), JSON::Type::null);
  });
}

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
