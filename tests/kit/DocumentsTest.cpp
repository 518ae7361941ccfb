// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"
#include "examples/snippets/AskForRoute.h"
#include "examples/snippets/EventLoop.h"
#include "examples/snippets/TypeAhead.h"

#include <QuorvelPlatform/MainQueue.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
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

// The last of these shows the map screen as RouteWindow.h does, which the tests of the map run.
TEST(DocumentsTest, examplesInCommentsAreThoseTriedHere) {
  std::set<std::string> names;
  for (const char* folder : {"QuorvelPlatform", "QuorvelKit", "QuorvelKit/JSON", "QuorvelMap"}) {
    for (const auto& file :
         std::filesystem::directory_iterator(std::string(QUORVELKIT_SOURCE_DIR "/") + folder)) {
      const std::string name = file.path().filename();
      if (name.ends_with(".h") &&
          contents(folder + ('/' + name)).find("///     ") != std::string::npos) {
        names.insert(name);
      }
    }
  }
  EXPECT_THAT(names, testing::ElementsAre("JSON.h", "QVBaseService.h", "QVFind.h", "QVNavigation.h",
                                          "QVSuggestRequest.h", "QVViewController.h"));
}

// --- the examples, with what those in comments of headers call

std::string heard;
void report(const std::string& text) { heard += text; }
void report(const Error& error) { report("error: " + error.localizedDescription()); }
template <class Element>
void reportCount(const std::vector<Element>& elements, const std::string& more) {
  report(std::to_string(elements.size()) + " found " + more);
}

namespace base_service {
struct WeatherRequest : QVBaseRequest {
  std::optional<URL> url() override { return URL::parse("http://nav.test/v4/route"); }
};
using WeatherResponse = QVBaseResponse;
#include "QVBaseService.inc"
void run() {
  Weather::today(std::make_shared<WeatherRequest>(), [](const auto& response) {
    if (response->error()) return report(*response->error());
    report(std::to_string(response->data()->size()) + " bytes");
  });
}
}  // namespace base_service

namespace navigation {
void draw(const std::vector<QVPoint>& points) { reportCount(points, ""); }
void run() {
#include "QVNavigation.inc"
}
}  // namespace navigation

namespace find {
void show(const QVCandidate& place) { report(place.address().value_or("a place")); }
void run() {
#include "QVFind.inc"
}
}  // namespace find

namespace suggest_request {
const Coordinate here{1, 2};
void show(const std::shared_ptr<QVSuggestResponse>& response) {
  response->error() ? report(*response->error()) : reportCount(response->suggestions(), "");
}
void run() {
#include "QVSuggestRequest.inc"
}
}  // namespace suggest_request

double latitudeIn(const Data& data) {
#include "JSON.inc"
  return latitude;
}

// An example, and a part of what it says in each event.
struct Example {
  std::function<void()> run;
  const char* good = "2 found";
  const char* useless = "no route";
  const char* unconfigured = "onfiguration";
  const char* failed = "out of order";
  const char* offline = "no network connection";
  const char* failedWordlessly = "";
};

TEST(DocumentsTest, everyExampleSaysWhatCameOfIt) {
  const FakeServer::Answer roots{200, test::roots("http://nav.test", "http://find.test")},
      good{200, R"({"points":[{"lat":39},{}],"candidates":[{"Address":"Bell Yard"}],)"
                R"("suggestions":[{},{}]})"},
      html{200, "<html>Log in first</html>"}, nothing{200, ""}, failure{500, "out of order"},
      wordless{500, ""}, offline{0, ""};
  const std::tuple<const char*, FakeServer::Answer, FakeServer::Answer, const char * Example::*>
      events[] = {{"good", roots, good, &Example::good},
                  {"HTML", roots, html, &Example::useless},
                  {"no body", roots, nothing, &Example::useless},
                  {"JSON null", roots, {200, "null"}, &Example::useless},
                  {"500", roots, failure, &Example::failed},
                  {"500, no body", roots, wordless, &Example::failedWordlessly},
                  {"network lost", roots, offline, &Example::offline},
                  {"no network", offline, offline, &Example::unconfigured},
                  {"configuration refused", failure, good, &Example::unconfigured},
                  {"configuration of HTML", html, good, &Example::unconfigured},
                  {"configuration without roots", {200, "{}"}, good, &Example::unconfigured}};
  TypeAhead typeAhead({1, 2}, reportCount<QVSuggestion>);
  const Example examples[] = {
      {[] {
         askForRoute({1, 2}, {3, 4}, [](const std::string& text) { report(text); });
       },
       "2 points"},
      {navigation::run},
      {find::run, "Bell Yard", "no such place"},
      {suggest_request::run, "2 found", "0 found"},
      {[&] { typeAhead.typed("b"); }, "2 found", "0 found There are no"},
      {base_service::run, "87 bytes", " bytes", ""}};
  FakeServer server;
  MainQueueEvents loop;
  for (const auto& [event, configuration, answer, expected] : events) {
    server.set(test::configurationPath, configuration);
    for (const char* path : {"/v4/route", "/api/v1/findAddressCandidates", "/api/v1/suggest"})
      server.set(path, answer);
    for (const Example& example : examples) {
      SCOPED_TRACE(std::string(event) + ", example " + std::to_string(&example - examples));
      QVConfiguration::setCachedResponse(nullptr);
      heard.clear();
      example.run();
      while (heard.empty()) {
        pollfd waited = loop.pollable();
        ASSERT_EQ(poll(&waited, 1, 20000), 1) << "it is silent";
        loop.handle();
      }
      EXPECT_THAT(heard, testing::HasSubstr(example.*expected));
    }
    EXPECT_EQ(latitudeIn(Data(answer.body)), answer.body == good.body ? 39 : 0);
  }
  MainQueue::main().setWakeUpHook(nullptr);
}

auto anyRoute() { return std::make_shared<QVRouteRequest>(Coordinate(), Coordinate()); }

TEST(AsyncContractTest, aConfigurationForgottenTooEarlySilencesTheCall) {
  FakeServer server;
  const auto runOneBlock = [] { return MainQueue::main().runOnce(std::chrono::seconds(20)); };
  server.hold(test::configurationPath);
  // Forgets what the call below has loaded, right before that call goes on.
  QVConfiguration::get([](const auto& own) {
    while (QVConfiguration::cachedResponse() == own)
      std::this_thread::yield();
    QVConfiguration::setCachedResponse(nullptr);
  });
  ASSERT_TRUE(runOneBlock());
  server.requests(2);
  const auto witness = std::make_shared<int>();
  QVNavigation::route(anyRoute(), [witness](const auto&) { ADD_FAILURE() << "it spoke"; });
  ASSERT_TRUE(runOneBlock());
  server.requests(3);
  server.release();
  EXPECT_TRUE(runMainQueueUntil([&] { return witness.use_count() == 1; }));
}

TEST(AsyncContractTest, aBaseURLThatDoesNotParseSilencesEveryFirstCall) {
  FakeServer server;
  QVBackendless::setBaseURL("127.0.0.1:8080");
  const auto witness = std::make_shared<int>();
  const auto never = [witness](const auto&...) { ADD_FAILURE() << "it spoke"; };
  EXPECT_EQ(QVBackendless::login(never), nullptr);
  QVConfiguration::get(never);
  QVBaseService::loadConfiguration(never);
  QVNavigation::route(anyRoute(), never);
  base_service::Weather::today(std::make_shared<base_service::WeatherRequest>(), never);
  MainQueue::main().runPending();
  EXPECT_EQ(witness.use_count(), 2) << "a handler waits";
  EXPECT_TRUE(server.requests().empty());
  heard.clear();
  askForRoute({1, 2}, {3, 4}, [](const std::string& text) { report(text); });
  EXPECT_EQ(heard, "The backend's URL is not usable.");
}

TEST(AsyncContractTest, whatTheApplicationThrowsLeavesTheCallOrTheMainQueue) {
  struct Oops {};
  struct Throwing : QVRouteRequest {
    using QVRouteRequest::QVRouteRequest;
    std::optional<URL> url() override { throw Oops(); }
  };
  struct ThrowingLogin : QVLoginRequest {
    std::optional<URL> url() override { throw Oops(); }
  };
  FakeServer server;
  const auto witness = std::make_shared<int>();
  const auto never = [witness](const auto&) { ADD_FAILURE() << "it spoke"; };
  const auto throws = [witness](const auto&...) { throw Oops(); };
  const auto ask = [&] {
    QVNavigation::route(std::make_shared<Throwing>(Coordinate(), Coordinate()), never);
  };
  EXPECT_THROW(QVBackendless::login(std::make_shared<ThrowingLogin>(), never), Oops);
  ask();
  EXPECT_THROW(runMainQueueUntil([] { return false; }), Oops);
  EXPECT_NE(QVConfiguration::cachedResponse(), nullptr);
  EXPECT_THROW(ask(), Oops);
  EXPECT_THROW(QVConfiguration::get(throws), Oops);
  EXPECT_THROW(QVBaseService::loadConfiguration(throws), Oops);
  QVNavigation::route(anyRoute(), throws);
  EXPECT_THROW(runMainQueueUntil([] { return false; }), Oops);
  EXPECT_EQ(witness.use_count(), 3) << "a handler is held for ever";
}

TEST(DocumentsTest, typeAheadShowsTheLastTextOnly) {
  FakeServer server;
  const std::string path = "/api/v1/suggest";
  server.set(path, {200, R"({"suggestions":[{"text":"Fells Point"}]})"});
  std::vector<std::size_t> shown;
  const auto show = [&](const auto& list, const auto& /*whyNone*/) {
    shown.push_back(list.size());
  };
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
