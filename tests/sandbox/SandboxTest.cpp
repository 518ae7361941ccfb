// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Sandbox.h"
#include "sandbox/page/ExchangeLog.h"
#include "tests/kit/FakeServer.h"
#include "tests/sandbox/TestMaps.h"
#include "tests/support/Call.h"

#include <QuorvelKit/QuorvelKitAll.h>

#include <gmock/gmock.h>

#include <map>
#include <set>

namespace quorvelkit::sandbox::test {
namespace {

using quorvelkit::test::configurationPath;
using quorvelkit::test::loginPath;
using testing::Optional, testing::StartsWith;
using Headers = std::map<std::string, std::string>;

const Headers loginHeaders{{"application-id", "5E2C9F14-7A03-41BD-C8E6-0F93D27A61B5"},
                           {"secret-key", "D41F06A3-92BE-4C57-AB08-6E1D3C5F7092"},
                           {"application-type", "REST"}};
const char* const account = R"({"login":"sdk-service@quorvel.example","password":"kvm40972"})";

class SandboxTest : public testing::Test {
 protected:
  SandboxTest() {
    EXPECT_TRUE(sandbox.start(0));
    QVBackendless::setBaseURL(sandbox.url());
  }
  // Sends a request and parses the body of the response as JSON.
  std::pair<int, JSON> ask(const std::string& method, const std::string& path,
                           const Headers& headers = {}, const std::string& body = "") const {
    URLRequest request = quorvelkit::test::requestFor(sandbox.url() + path);
    request.setHTTPMethod(method);
    for (const auto& [name, value] : headers)
      request.setValue(value, name);
    if (method == "POST") request.setHTTPBody(Data(body));
    const auto result = quorvelkit::test::send(std::move(request));
    return {result.status(), JSON::parse(result.body())};
  }

  Sandbox sandbox{MapData::builtInTown()};
};

TEST_F(SandboxTest, WrongLoginsAreRefused) {
  // Null: the header field is missing.
  const std::tuple<const char*, const char*, const char*, int, int> cases[] = {
      {"application-id", "0", account, 400, 2002},
      {"application-id", nullptr, account, 400, 2002},
      {"secret-key", "0", account, 400, 2002},
      {"secret-key", nullptr, account, 400, 2002},
      {"application-type", nullptr, account, 400, 2003},
      {"more", "", R"({"login":"sdk-service@quorvel.example","password":"x"})", 401, 3003},
      {"more", "", R"({"login":"x","password":"kvm40972"})", 401, 3003},
      {"more", "", R"({"login":1,"password":"kvm40972"})", 400, 3011},
      {"more", "", R"({"login":"sdk-)", 400, 3011},
      {"more", "", "", 400, 3011}};
  for (const auto& [header, value, body, status, code] : cases) {
    Headers headers = loginHeaders;
    headers.erase(header);
    if (value != nullptr) headers.emplace(header, value);
    const auto [given, said] = ask("POST", loginPath, headers, body);
    EXPECT_EQ(given, status) << header;
    EXPECT_EQ(said["code"].intValue(), code) << header;
    EXPECT_FALSE(said["message"].stringValue().empty());
  }
}

TEST_F(SandboxTest, ConfigurationNeedsAValidToken) {
  const auto newToken = [&] {
    return ask("POST", loginPath, loginHeaders, account).second["user-token"].stringValue();
  };
  const std::string token = newToken();
  EXPECT_EQ(token.size(), 36U);
  EXPECT_NE(newToken(), token);
  const JSON roots = ask("GET", configurationPath, {{"user-token", token}}).second;
  EXPECT_EQ(roots["quorvel-navigation-root-url"].stringValue(), sandbox.url());
  EXPECT_EQ(roots["quorvel-find-root-url"].stringValue(), sandbox.url());
  for (const Headers& wrong :
       {Headers{}, Headers{{"user-token", ""}}, Headers{{"user-token", std::string(36, 'A')}}}) {
    const auto [status, said] = ask("GET", configurationPath, wrong);
    EXPECT_EQ(status, 401);
    EXPECT_EQ(said["code"].intValue(), 3064);
  }
}

TEST_F(SandboxTest, UnknownPathsAndMethodsAreRefused) {
  const std::tuple<std::string, std::string, int> cases[] = {
      {"OPTIONS", "/v4/route", 405},
      {"GET", '/' + std::string(9000, 'x'), 414},
      {"MOVE", "/", 400},
      {"GET", "/v4/routes", 404},
      {"POST", "/v4/route", 405},
      {"GET", loginPath, 405},
      {"DELETE", configurationPath, 405},
      {"GET", "/v4/route", 400}};
  for (const auto& [method, path, status] : cases) {
    const auto [given, said] = ask(method, path);
    EXPECT_EQ(given, status) << method << ' ' << path;
    EXPECT_FALSE(said["message"].stringValue().empty());
  }
}

TEST(ExchangeLogTest, SecretsAreShortenedEverywhere) {
  // Target, body, and what is stored of both.
  const std::tuple<std::string, std::string, std::string, std::string> cases[] = {
      {"/a?b=1&user-token=abcdefgh&c=2", "", "/a?b=1&user-token=ab\u2026&c=2", ""},
      {"/a?key=12345678", R"({"n":1.50})", "/a?key=12\u2026", R"({"n":1.50})"},
      {"/", R"({"login":"x","password":"\u00E4\u00E4\u00E4\u00E4"})", "/",
       "{\"login\":\"x\",\"password\":\"\u00E4\u2026\"}"},
      {"/", R"([{"user":{"password":"letmein1","id":7},"token":12345678}])", "/",
       "[{\"user\":{\"password\":\"le\u2026\",\"id\":7},\"token\":\"12\u2026\"}]"}};
  for (const auto& [target, body, shownTarget, shownBody] : cases) {
    ExchangeLog log;
    log.add({"POST",
             "/",
             {},
             body,
             nullptr,
             target,
             {{"X-Token",
               "\xff\xfe"
               "345678"}}},
            {});
    const JSON request = log.after(0)[{"exchanges", 0, "request"}];
    EXPECT_EQ(request["target"], shownTarget);
    EXPECT_EQ(request["body"], shownBody);
    EXPECT_EQ((request[{"fields", 0, 1}]), "??\u2026");
    EXPECT_TRUE(log.after(0).rawData());
  }
}

TEST_F(SandboxTest, StartFailsIfThePortIsInUse) {
  Sandbox second(MapData::builtInTown());
  EXPECT_FALSE(second.start(std::stoi(sandbox.url().substr(sandbox.url().rfind(':') + 1))));
  EXPECT_EQ(second.url(), "");
}

TEST_F(SandboxTest, ConcurrentRequestsGetTheirOwnAnswers) {
  Sandbox town(searchTown());
  ASSERT_TRUE(town.start(0));
  QVBackendless::setBaseURL(town.url());
  const Coordinate here{10, 20};
  std::map<std::string, QVCall<QVAddressCandidatesResponse>> searches;
  std::vector<QVCall<QVRouteResponse>> routes;
  for (int number = 101; number <= 140; ++number) {
    const std::string text = std::to_string(number) + " Harbor Street";
    const auto search = std::make_shared<QVAddressCandidatesRequest>(text, here);
    searches.emplace(text, QVCall(QVFind::addressCandidates, search));
    const auto route = std::make_shared<QVRouteRequest>(here, Coordinate{10, 20.008});
    routes.emplace_back(QVNavigation::route, route);
  }
  for (auto& [text, search] : searches)
    EXPECT_THAT(search.wait()->candidates().at(0).matchAddress(), Optional(StartsWith(text)));
  std::set<std::size_t> sizes;
  for (auto& route : routes)
    sizes.insert(route.wait()->route()->points().size());
  EXPECT_EQ(sizes.size(), 1U);
  EXPECT_GT(*sizes.begin(), 2U);
}

}  // namespace
}  // namespace quorvelkit::sandbox::test
