// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"
#include "examples/snippets/AskForRoute.h"
#include "examples/snippets/EventLoop.h"
#include "examples/snippets/TypeAhead.h"

#include <QuorvelPlatform/MainQueue.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <thread>

namespace quorvelkit {
namespace {

using test::FakeServer;
using test::runMainQueueUntil;

std::string contents(const std::string& path) {
  std::ifstream file(QUORVELKIT_SOURCE_DIR "/" + path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// What a document shows of a file: without the licence line and the include guard.
std::string shown(std::string text) {
  for (const char* line : {"// SPDX-License-Identifier: Apache-2.0\n", "#pragma once\n\n"}) {
    if (text.starts_with(line)) text.erase(0, std::string(line).size());
  }
  return text;
}

// Every block that names a file shows that file.
TEST(DocumentsTest, showTheFilesThatAreTestedHere) {
  int blocks = 0;
  for (const char* page : {"README.md", "docs/async.md", "docs/map.md", "docs/search.md"}) {
    const std::string text = contents(page);
    for (const std::string opening : {"\n```cpp ", "\n```text "}) {
      for (auto at = text.find(opening); at != std::string::npos; at = text.find(opening, at + 1)) {
        const auto name = at + opening.size();
        const auto begin = text.find('\n', name) + 1;
        const auto end = text.find("```", begin);
        const std::string path = text.substr(name, begin - 1 - name);
        EXPECT_EQ(text.substr(begin, end - begin), shown(contents(path))) << page << ": " << path;
        ++blocks;
      }
    }
  }
  EXPECT_EQ(blocks, 6);
}

TEST(DocumentsTest, askForRouteSaysWhatCameOfIt) {
  using Answer = FakeServer::Answer;
  const std::string roots = R"({"quorvel-navigation-root-url":"http://nav.test"})";
  FakeServer server;
  const std::tuple<Answer, Answer, std::string> cases[] = {
      {{200, roots}, {200, R"({"points":[{},{}]})"}, "2 points"},
      {{200, roots}, {404, "no way"}, "no way"},
      {{200, "{}"}, {}, "The configuration names no navigation server."},
      {{500, roots}, {}, "There is no configuration."}};
  for (const auto& [configuration, route, said] : cases) {
    QVConfiguration::setCachedResponse(nullptr);
    server.set(test::configurationPath, configuration);
    server.set("/v4/route", route);
    std::string heard;
    askForRoute({1, 2}, {3, 4}, [&](const std::string& text) { heard += text; });
    EXPECT_TRUE(runMainQueueUntil([&] { return !heard.empty(); }));
    EXPECT_EQ(heard, said);
  }
}

TEST(DocumentsTest, eventLoopDrainsTheMainQueue) {
  MainQueueEvents events;
  int ran = 0;
  std::thread other([&] { MainQueue::main().async([&] { ++ran; }); });
  while (ran == 0) {
    pollfd waited = events.pollable();
    ASSERT_EQ(poll(&waited, 1, 20000), 1);
    events.handle();
  }
  other.join();
  MainQueue::main().setWakeUpHook(nullptr);
}

TEST(DocumentsTest, typeAheadShowsTheLastTextOnly) {
  FakeServer server;
  const std::string path = "/api/v1/suggest";
  server.set(path, {200, R"({"suggestions":[{"text":"Fells Point"}]})"});
  std::vector<std::size_t> shown;
  const auto show = [&](const auto& suggestions) { shown.push_back(suggestions.size()); };
  {
    TypeAhead typeAhead({39.28, -76.59}, show);
    // Two before the configuration is there, two with it at hand.
    typeAhead.typed("f");
    typeAhead.typed("fells p");
    EXPECT_TRUE(runMainQueueUntil([&] { return shown.size() == 1; }));
    typeAhead.typed("x");
    typeAhead.typed("A&W \"é\"+=");
    EXPECT_TRUE(runMainQueueUntil([&] { return shown.size() == 2; }));
    EXPECT_EQ(shown, (std::vector<std::size_t>{1, 1}));
    EXPECT_EQ(server.requests().back().url().query(),
              "text=A%26W%20%22%C3%A9%22%2B%3D&location=-76.59,39.28");
    server.set(path, {200, "{}", true});
    const auto before = server.requests().size();
    typeAhead.typed("never answered");
    server.requests(before + 1);
  }
  // The next call is behind the cancelled one on the way to the main queue.
  bool over = false;
  QVFind::reverseGeocode(std::make_shared<QVReverseGeocodeRequest>(Coordinate()),
                         [&](const auto&) { over = true; });
  EXPECT_TRUE(runMainQueueUntil([&] { return over; }));
  EXPECT_EQ(shown.size(), 2U);
}

}  // namespace
}  // namespace quorvelkit
