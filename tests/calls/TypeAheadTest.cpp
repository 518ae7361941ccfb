// SPDX-License-Identifier: Apache-2.0
#include "tests/calls/CallForms.h"
#include "tests/support/ManualScheduler.h"

#include <QuorvelKit/Calls/QVTypeAhead.h>

#include <gmock/gmock.h>

namespace quorvelkit {
namespace {

using namespace test;
using namespace std::chrono_literals;
using testing::ElementsAre;

class TypeAheadTest : public testing::Test {
 protected:
  TypeAheadTest() { server.set(path, {200, R"({"suggestions":[{},{}]})"}); }

  void make(std::chrono::milliseconds debounce = 0ms) {
    typeAhead = std::make_unique<QVTypeAhead>(
        Coordinate{39.28, -76.59},
        [this](const std::string& text, const auto& result) {
          shown.push_back(text + (result ? std::to_string(result->suggestions().size()) : "!"));
          if (text == "destroy") typeAhead.reset();
          if (text == "again") typeAhead->setText("and again");
        },
        debounce, scheduler);
  }
  std::vector<std::string> sentTexts() {
    std::vector<std::string> texts;
    for (const URLRequest& request : server.requests()) {
      const std::string query(request.url().query().value_or(""));
      if (query.starts_with("text=")) texts.push_back(query.substr(5, query.find('&') - 5));
    }
    return texts;
  }
  bool isSent(std::size_t texts) {
    return runUntil([&] { return sentTexts().size() == texts; });
  }
  bool isShown(std::size_t results) {
    return runUntil([&] { return shown.size() == results; });
  }

  const std::string path = "/api/v1/suggest";
  FakeServer server;
  std::shared_ptr<ManualScheduler> scheduler = std::make_shared<ManualScheduler>();
  std::vector<std::string> shown;
  std::unique_ptr<QVTypeAhead> typeAhead;
};

TEST_F(TypeAheadTest, ShowsTheNewestTextOnly) {
  make();
  for (const char* text : {"f", "fe", "A&W \"é\"+="})  // while the configuration is loaded
    typeAhead->setText(text);
  EXPECT_TRUE(isShown(1));
  EXPECT_THAT(sentTexts(), ElementsAre("A%26W%20%22%C3%A9%22%2B%3D"));
  server.hold(path);
  typeAhead->setText("in flight");
  EXPECT_TRUE(isSent(2));
  typeAhead->setText("superseded");
  typeAhead->setText("newest");
  EXPECT_THAT(sentTexts(), testing::SizeIs(2)) << "The cancelled call has not ended yet.";
  EXPECT_TRUE(isSent(3));
  server.release();
  EXPECT_TRUE(isShown(2));
  EXPECT_THAT(shown, ElementsAre("A&W \"é\"+=2", "newest2"));
  EXPECT_THAT(sentTexts(), ElementsAre(testing::_, "in%20flight", "newest"));
}

TEST_F(TypeAheadTest, SendsWhenNoOtherTextFollows) {
  make(100ms);
  typeAhead->setText("a");
  scheduler->advance(99ms);
  typeAhead->setText("ab");
  scheduler->advance(99ms);
  MainQueue::main().runPending();
  EXPECT_TRUE(server.requests().empty());
  scheduler->advance(1ms);
  EXPECT_TRUE(isShown(1));
  server.hold(path);
  typeAhead->setText("in flight");
  scheduler->advance(100ms);
  EXPECT_TRUE(isSent(2));
  typeAhead->setText("later");  // Its debounce ends after the cancelled call.
  EXPECT_TRUE(runUntil([&] { return scheduler->waiting() == 1; }));
  scheduler->advance(100ms);
  EXPECT_TRUE(isSent(3));
  typeAhead->setText("removed");
  typeAhead->setText("");
  EXPECT_EQ(scheduler->waiting(), 0U);
  EXPECT_THAT(shown, ElementsAre("ab2"));
}

TEST_F(TypeAheadTest, ReportsFailures) {
  make();
  server.set(path, {500, "no"});
  typeAhead->setText("a");
  EXPECT_TRUE(isShown(1));
  QVConfiguration::setCachedResponse(nullptr);
  QVBackendless::setBaseURL("127.0.0.1:1");
  QVBackendless::setUserToken("");
  typeAhead->setText("b");
  EXPECT_TRUE(isShown(2));
  EXPECT_THAT(shown, ElementsAre("a!", "b!"));
}

TEST_F(TypeAheadTest, HandlerMayUseAndDestroyItsObject) {
  make();
  typeAhead->setText("again");
  EXPECT_TRUE(isShown(2));
  typeAhead->setText("destroy");
  EXPECT_TRUE(isShown(3));
  EXPECT_EQ(typeAhead, nullptr);
  server.hold(path);
  // Destroyed during the debounce, then in flight.
  for (const auto debounce : {100ms, 0ms}) {
    make(debounce);
    typeAhead->setText("never shown");
    EXPECT_TRUE(isSent(debounce == 0ms ? 4 : 3));
    typeAhead.reset();
    scheduler->advance(1s);
  }
  server.release();
  EXPECT_TRUE(RouteCall(QVNavigation::route, routeRequest()).wait().response());
  EXPECT_THAT(shown, ElementsAre("again2", "and again2", "destroy2"));
}

}  // namespace
}  // namespace quorvelkit
