// SPDX-License-Identifier: Apache-2.0
#include "FakeServer.h"

#include <QuorvelKit/QuorvelKitAll.h>

#include <gtest/gtest.h>

#include <new>
#include <thread>

namespace quorvelkit {
namespace {

using namespace test;

std::string listOf(const std::string& element, std::size_t count) {
  std::string list = '[' + element;
  while (--count > 0)
    list += ',' + element;
  return list + ']';
}

// The fault table tests the documents that the parser refuses.
TEST(CallTest, ModelsAboveTheMemoryBudgetAreAnError) {
  URLSessionConfiguration::setDefault({.maximumDocumentSize = 1'000'000});
  FakeServer server;
  constexpr Coordinate here{1, 2};
  const auto routeRequest = std::make_shared<QVRouteRequest>(here, here);
  const auto searchRequest = std::make_shared<QVAddressCandidatesRequest>("a", here);
  constexpr std::size_t fewer = 1'000;
  for (const auto& [element, many] :
       {std::pair("0", 20'000U), {R"({"turn":1})", 12'000U}, {"[]", 20'000U}}) {
    for (const std::size_t count : {fewer, std::size_t{many}, fewer}) {
      SCOPED_TRACE(std::string(element) + ' ' + std::to_string(count));
      const std::string list = listOf(element, count);
      server.set("/v4/route", {200, "{\"points\":" + list + '}'});
      server.set("/api/v1/findAddressCandidates", {200, "{\"candidates\":" + list + '}'});
      const auto route = QVCall(QVNavigation::route, routeRequest).wait().response();
      const auto search = QVCall(QVFind::addressCandidates, searchRequest).wait().response();
      const std::size_t models = count == many ? 0 : count;
      EXPECT_EQ(route->route() ? route->route()->points().size() : 0, models);
      EXPECT_EQ(search->candidates().size(), models);
      for (const QVBaseResponse* answer : {static_cast<QVBaseResponse*>(route.get()),
                                           static_cast<QVBaseResponse*>(search.get())}) {
        ASSERT_EQ(answer->error().has_value(), count == many);
        if (!answer->error()) continue;
        EXPECT_EQ(answer->error()->domain(), URLError::domain);
        EXPECT_EQ(answer->error()->code(), URLError::dataLengthExceedsMaximum);
        EXPECT_FALSE(answer->data() || answer->response() || answer->json());
      }
    }
  }
  // The budget does not limit an application's own models.
  EXPECT_EQ(QVRoute(JSON::parse("{\"points\":" + listOf("0", 90'000) + '}')).points().size(),
            90'000U);
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
