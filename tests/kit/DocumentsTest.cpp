// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"
#include "examples/snippets/AskForRoute.h"
#include "examples/snippets/Download.h"
#include "examples/snippets/FindPlaces.h"
#include "examples/snippets/Forecast.h"
#include "examples/snippets/OfflineProtocol.h"
#include "examples/snippets/OtherBackend.h"
#include "examples/snippets/ReadJSON.h"
#include "examples/snippets/SearchField.h"
#include "examples/snippets/SignalLoop.h"
#include "tests/support/PublicHeaders.h"

#include <QuorvelKit/Calls/QVStartUp.h>
#include <QuorvelPlatform/EventLoops/PollEventLoop.h>
#include <QuorvelPlatform/MainQueue.h>

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <thread>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;
using test::FakeServer;
using test::runMainQueueUntil;

std::string contentsOf(const std::string& path) {
  std::ifstream file(QUORVELKIT_SOURCE_DIR "/" + path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Returns a file as documents show it: without licence line and include guard.
std::string documented(std::string text) {
  for (const char* line : {"// SPDX-License-Identifier: Apache-2.0\n", "#pragma once\n\n"}) {
    if (text.starts_with(line)) text.erase(0, std::string(line).size());
  }
  return text;
}

// A code block with a file name must equal that file.
TEST(DocumentsTest, CodeBlocksEqualTheirFiles) {
  int blocks = 0;
  for (const char* page :
       {"README.md", "docs/async.md", "docs/map.md", "docs/search.md", "docs/server.md"}) {
    const std::string text = contentsOf(page);
    for (const std::string opening : {"\n```cpp ", "\n```text "}) {
      for (auto at = text.find(opening); at != std::string::npos; at = text.find(opening, at + 1)) {
        const auto name = at + opening.size();
        const auto begin = text.find('\n', name) + 1;
        const auto end = text.find("```", begin);
        const std::string path = text.substr(name, begin - 1 - name);
        EXPECT_EQ(text.substr(begin, end - begin), documented(contentsOf(path)))
            << page << ": " << path;
        ++blocks;
      }
    }
  }
  EXPECT_EQ(blocks, 7);
}

// The tests below run these examples, except the last one: the tests of the map run it.
TEST(DocumentsTest, EveryHeaderWithAnExampleIsListed) {
  std::vector<std::string> paths;
  for (const auto& [path, text] : test::publicHeaders(QUORVELKIT_SOURCE_DIR)) {
    if (text.find("///     ") != std::string::npos) paths.push_back(path);
  }
  EXPECT_THAT(paths, testing::ElementsAre(
                         "QuorvelKit/Calls/QVCall.h", "QuorvelKit/Calls/QVStartUp.h",
                         "QuorvelKit/JSON/JSON.h", "QuorvelKit/QVBaseService.h",
                         "QuorvelKit/QVFind.h", "QuorvelKit/QVNavigation.h",
                         "QuorvelKit/QVSuggestRequest.h", "QuorvelKit/QVViewController.h"));
}

TEST(PublicHeadersTest, QuorvelKitAllIncludesThoseOfTheCore) {
  const auto headers = test::publicHeaders(QUORVELKIT_SOURCE_DIR);
  const std::string all = "QuorvelKit/QuorvelKitAll.h";
  for (const auto& [path, text] : headers) {
    const bool needsOtherLibraries =
        path.starts_with("QuorvelMap/") || path == "QuorvelKit/QVRouteWidget.h" ||
        path == "QuorvelKit/QVViewController.h" ||
        path.starts_with("QuorvelPlatform/EventLoops/") || path.find("Asio") != std::string::npos;
    EXPECT_EQ(headers.at(all).find("#include <" + path + ">") != std::string::npos,
              !needsOtherLibraries && path != all)
        << path;
  }
}

// --- the examples, and the functions that the examples in headers call

std::string reported;
void report(const std::string& text) { reported += text; }
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
void runCall() {
#include "QVCall.inc"
}
}  // namespace navigation

namespace start_up {
void showFirstScreen() { report("ready"); }
void run() {
#include "QVStartUp.inc"
}
}  // namespace start_up

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

// An example, and a part of the text that it reports in each case.
struct Example {
  std::function<void()> run;
  const char* success = "2 found";
  const char* noResult = "not a route";
  const char* noConfiguration = "onfiguration";
  const char* httpError = "out of order";
  const char* noNetwork = "no network connection";
  const char* httpErrorWithoutBody = "";
};

TEST(DocumentsTest, ExamplesReportEveryResult) {
  const FakeServer::Answer roots{200, test::roots("http://nav.test", "http://find.test")},
      success{200, R"({"points":[{"lat":39},{}],"candidates":[{"Address":"Bell Yard"}],)"
                   R"("suggestions":[{},{}]})"},
      html{200, "<html>Log in first</html>"}, empty{200, ""}, httpError{500, "out of order"},
      httpErrorWithoutBody{500, ""}, noNetwork{0, ""};
  const std::tuple<const char*, FakeServer::Answer, FakeServer::Answer, const char * Example::*>
      cases[] = {{"success", roots, success, &Example::success},
                 {"HTML", roots, html, &Example::noResult},
                 {"empty body", roots, empty, &Example::noResult},
                 {"JSON null", roots, {200, "null"}, &Example::noResult},
                 {"500", roots, httpError, &Example::httpError},
                 {"500, empty body", roots, httpErrorWithoutBody, &Example::httpErrorWithoutBody},
                 {"network lost", roots, noNetwork, &Example::noNetwork},
                 {"no network", noNetwork, noNetwork, &Example::noConfiguration},
                 {"configuration: 500", httpError, success, &Example::noConfiguration},
                 {"configuration: HTML", html, success, &Example::noConfiguration},
                 {"configuration: {}", {200, "{}"}, success, &Example::noConfiguration}};
  SearchField searchField({1, 2}, reportCount<QVSuggestion>);
  const Example examples[] = {
      {[] {
         askForRoute({1, 2}, {3, 4}, [](const std::string& text) { report(text); });
       },
       "2 points"},
      {navigation::run},
      {navigation::runCall},
      {start_up::run, "ready", "ready", "error", "ready", "ready", "ready"},
      {find::run, "Bell Yard", "no such place"},
      {suggest_request::run, "2 found", "0 found"},
      {[&] { searchField.textChanged("b"); }, "2 found", "0 found There are no"},
      {base_service::run, "87 bytes", " bytes", ""}};
  FakeServer server;
  PollEventLoop loop;
  for (const auto& [name, configuration, answer, expected] : cases) {
    server.set(test::configurationPath, configuration);
    for (const char* path : {"/v4/route", "/api/v1/findAddressCandidates", "/api/v1/suggest"})
      server.set(path, answer);
    for (const Example& example : examples) {
      SCOPED_TRACE(std::string(name) + ", example " + std::to_string(&example - examples));
      QVConfiguration::setCachedResponse(nullptr);
      reported.clear();
      example.run();
      while (reported.empty()) {
        pollfd pollable = loop.pollable();
        ASSERT_EQ(poll(&pollable, 1, 20000), 1) << "it reports nothing";
        loop.handle();
      }
      EXPECT_THAT(reported, testing::HasSubstr(example.*expected));
    }
    EXPECT_EQ(latitudeIn(Data(answer.body)), answer.body == success.body ? 39 : 0);
  }
}

TEST(DocumentsTest, SnippetsGiveTheirResults) {
  const std::map<std::string, const char*> bodies{
      {"/api/v1/findAddressCandidates", R"({"candidates":[{"Address":"Bell Yard","score":99}]})"},
      {"/api/v1/reverseGeocode", R"({"address":{"Match_addr":"2 Bell Yard"}})"},
      {"/api/v1/suggest", R"({"suggestions":[{"text":"Bell"}]})"},
      {"/forecast", R"({"celsius":21.5})"},
      {"/news", "fog"}};
  OfflineProtocol::Bodies all{
      {test::loginPath, Data("{}")},
      {test::configurationPath, Data(test::roots("http://nav.test", "http://find.test"))}};
  for (const auto& [path, body] : bodies)
    all[path] = Data(body);
  OfflineProtocol::use(all);
  SignalLoop loop;
  const auto take = [&](const std::string& text) { reported = text; };
  const auto waited = [&] {
    while (reported.empty())
      loop.wait();
    return std::exchange(reported, "");
  };
  EXPECT_FALSE(changeBackend("127.0.0.1:8080", take));
  EXPECT_TRUE(changeBackend("http://backend.test", take));
  EXPECT_EQ(waited(), "http://nav.test");
  EXPECT_EQ(bestPlace("Bell Yard", {1, 2}), "Bell Yard, score 99.000000");
  EXPECT_EQ(addressAt({1, 2}), "2 Bell Yard");
  EXPECT_EQ(firstSuggestion("Be", {1, 2}), "Bell");
  Weather::forecast([&](const auto& response) {
    take(std::to_string(response->forecast()->degreesCelsius().value_or(0)));
  });
  EXPECT_EQ(waited(), "21.500000");
  const auto news = [&](const std::string& server) {
    return downloadNews(server, "fog & rain", [&](const std::string& text) {
      MainQueue::main().async([=] { take(text); });
    });
  };
  const auto task = news("http://news.test");
  EXPECT_THAT(task->originalRequest().url().absoluteString(),
              testing::EndsWith("fog%20%26%20rain"));
  EXPECT_EQ(waited(), "200: fog");
  EXPECT_EQ(news("no server"), nullptr);
  const auto later = std::make_shared<std::function<void()>>([&] { take("later"); });
  const auto timer = runLater(1ms, later);
  EXPECT_EQ(waited(), "later");
  JSON shop = JSON::parse(R"({"items":[{"price":2.5},{"price":1},{}],"sold":[3,4],"open":true})");
  increment(shop, "sold", 1);
  EXPECT_EQ(shop["sold"].rawString(TextEncoding::utf8, JSONWritingOptions::none), "[3,5]");
  EXPECT_EQ(totalPrice(shop["items"]), 3.5);
  EXPECT_EQ(summary(JSON::parse(R"({"a":1.50,"b":"x"})")), "a=1.5 b=x ");
  EXPECT_EQ(countTexts(JSON::parse(R"(["b","a","b"])")), (OrderedMap<int>{{"b", 2}, {"a", 1}}));
  EXPECT_TRUE(isPrice("12.10"));
  EXPECT_FALSE(isPrice("free"));
}

auto anyRoute() { return std::make_shared<QVRouteRequest>(Coordinate(), Coordinate()); }

TEST(AsyncContractTest, HandlerIsDroppedIfTheConfigurationIsRemovedTooEarly) {
  FakeServer server;
  const auto runOneBlock = [] { return MainQueue::main().runOnce(std::chrono::seconds(20)); };
  server.hold(test::configurationPath);
  // Removes the configuration that the call below loaded, before that call proceeds.
  QVConfiguration::get([](const auto& own) {
    while (QVConfiguration::cachedResponse() == own)
      std::this_thread::yield();
    QVConfiguration::setCachedResponse(nullptr);
  });
  ASSERT_TRUE(runOneBlock());
  server.requests(2);
  const auto witness = std::make_shared<int>();
  QVNavigation::route(anyRoute(), [witness](const auto&) { ADD_FAILURE() << "the handler ran"; });
  ASSERT_TRUE(runOneBlock());
  server.requests(3);
  server.release();
  EXPECT_TRUE(runMainQueueUntil([&] { return witness.use_count() == 1; }));
}

TEST(AsyncContractTest, HandlersAreDroppedIfTheBaseURLDoesNotParse) {
  FakeServer server;
  QVBackendless::setBaseURL("127.0.0.1:8080");
  const auto witness = std::make_shared<int>();
  const auto never = [witness](const auto&...) { ADD_FAILURE() << "the handler ran"; };
  EXPECT_EQ(QVBackendless::login(never), nullptr);
  QVConfiguration::get(never);
  QVBaseService::loadConfiguration(never);
  QVNavigation::route(anyRoute(), never);
  base_service::Weather::today(std::make_shared<base_service::WeatherRequest>(), never);
  MainQueue::main().runPending();
  EXPECT_EQ(witness.use_count(), 2) << "a handler was not dropped";
  EXPECT_TRUE(server.requests().empty());
  reported.clear();
  askForRoute({1, 2}, {3, 4}, [](const std::string& text) { report(text); });
  EXPECT_EQ(reported, "The backend's URL is not usable.");
}

TEST(AsyncContractTest, ExceptionsLeaveTheCallOrTheMainQueue) {
  struct TestException {};
  struct Throwing : QVRouteRequest {
    using QVRouteRequest::QVRouteRequest;
    std::optional<URL> url() override { throw TestException(); }
  };
  struct ThrowingLogin : QVLoginRequest {
    std::optional<URL> url() override { throw TestException(); }
  };
  FakeServer server;
  const auto witness = std::make_shared<int>();
  const auto never = [witness](const auto&) { ADD_FAILURE() << "the handler ran"; };
  const auto throws = [witness](const auto&...) { throw TestException(); };
  const auto sendThrowing = [&] {
    QVNavigation::route(std::make_shared<Throwing>(Coordinate(), Coordinate()), never);
  };
  EXPECT_THROW(QVBackendless::login(std::make_shared<ThrowingLogin>(), never), TestException);
  sendThrowing();
  EXPECT_THROW(runMainQueueUntil([] { return false; }), TestException);
  EXPECT_NE(QVConfiguration::cachedResponse(), nullptr);
  EXPECT_THROW(sendThrowing(), TestException);
  EXPECT_THROW(QVConfiguration::get(throws), TestException);
  EXPECT_THROW(QVBaseService::loadConfiguration(throws), TestException);
  QVNavigation::route(anyRoute(), throws);
  EXPECT_THROW(runMainQueueUntil([] { return false; }), TestException);
  EXPECT_EQ(witness.use_count(), 3) << "a handler was not destroyed";
}

}  // namespace
}  // namespace quorvelkit
