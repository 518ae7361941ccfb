// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"

#include <QuorvelKit/QuorvelKitAll.h>

#include <gtest/gtest.h>

#include <new>
#include <thread>

namespace quorvelkit {
namespace {

using namespace test;

std::string listBody(const char* key, const std::string& element, std::size_t count) {
  std::string body = std::string("{\"") + key + "\":[" + element;
  while (--count > 0)
    body += ',' + element;
  return body + "]}";
}

// The fault table tests the documents that the parser refuses.
TEST(CallTest, ModelsAboveTheMemoryBudgetAreAnError) {
  URLSessionConfiguration::setDefault({.maximumDocumentSize = 1'000'000});
  FakeServer server;
  constexpr Coordinate here{1, 2};
  const auto routeOf = [&](const std::string& body) {
    server.set("/v4/route", {200, body});
    const auto answer =
        QVCall(QVNavigation::route, std::make_shared<QVRouteRequest>(here, here)).wait().response();
    return std::pair(std::shared_ptr<QVBaseResponse>(answer),
                     answer->route() ? answer->route()->points().size() : 0);
  };
  const auto candidatesOf = [&](const std::string& body) {
    server.set("/api/v1/findAddressCandidates", {200, body});
    const auto request = std::make_shared<QVAddressCandidatesRequest>("a", here);
    const auto answer = QVCall(QVFind::addressCandidates, request).wait().response();
    return std::pair(std::shared_ptr<QVBaseResponse>(answer), answer->candidates().size());
  };
  using Ask =
      std::function<std::pair<std::shared_ptr<QVBaseResponse>, std::size_t>(const std::string&)>;
  constexpr std::size_t fewer = 1'000;
  const std::tuple<Ask, const char*, const char*, std::size_t> rows[] = {
      {routeOf, "points", "0", 20'000},
      {routeOf, "points", R"({"turn":1})", 6'000},
      {candidatesOf, "candidates", "[]", 20'000}};
  for (const auto& [ask, key, element, many] : rows) {
    for (const std::size_t count : {fewer, many, fewer}) {
      SCOPED_TRACE(std::string(key) + ", " + element);
      const auto [answer, models] = ask(listBody(key, element, count));
      EXPECT_EQ(models, count == many ? 0 : count);
      EXPECT_EQ(answer->error().has_value(), count == many);
      if (!answer->error()) continue;
      EXPECT_EQ(answer->error()->domain(), URLError::domain);
      EXPECT_EQ(answer->error()->code(), URLError::dataLengthExceedsMaximum);
      EXPECT_FALSE(answer->data() || answer->response() || answer->json());
    }
  }
  // The budget does not limit an application's own models.
  EXPECT_EQ(QVRoute(JSON::parse(listBody("points", "0", 90'000))).points().size(), 90'000U);
}

TEST(CallTest, ConfigurationIsNotCachedIfItsRequestHadNoMemory) {
  struct RequestWithoutMemory : QVConfigurationRequest {
    std::optional<URLRequest> request() override { throw std::bad_alloc(); }
  };
  const FakeServer server;
  EXPECT_EQ(QVCall(QVConfiguration::get, std::make_shared<RequestWithoutMemory>()).wait().error(),
            URLError::outOfMemory());
  EXPECT_EQ(QVConfiguration::cachedResponse(), nullptr);
}

TEST(CallTest, SecondProceedStopsTheProcess) {
  struct Twice : QVBaseService {
    static void send(std::function<void(std::function<void()>)> prepare) {
      QVCallSteps<QVRouteResponse> steps;
      steps.prepare = std::move(prepare);
      call<QVRouteResponse>(
          std::make_shared<QVRouteRequest>(Coordinate{}, Coordinate{}), [](const auto&) {},
          std::move(steps));
    }
  };
  const FakeServer server;
  configure(roots("http://nav.test", ""));
  const auto onOneThread = [](const auto& proceed) { proceed(), proceed(); };
  const auto onTwoThreads = [](const auto& proceed) {
    const std::jthread other(proceed);
    proceed();
  };
  EXPECT_DEATH(Twice::send(onOneThread), "called proceed twice");
  EXPECT_DEATH(Twice::send(onTwoThreads), "called proceed twice");
}

}  // namespace
}  // namespace quorvelkit
