// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Sandbox.h"
#include "tests/kit/FakeServer.h"
#include "tests/sandbox/SearchTown.h"
#include "tests/support/Call.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVFind.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelPlatform/PercentEncoding.h>

#include <gmock/gmock.h>

#include <set>

namespace quorvelkit::sandbox {
namespace {

constexpr Coordinate demoStart{40.4523, -38.2804};
constexpr Coordinate demoEnd{40.4469, -38.1872};
const std::string configurationPath =
    "/5E2C9F14-7A03-41BD-C8E6-0F93D27A61B5/v1/files/configuration/configuration.json";

class SandboxTest : public testing::Test {
 protected:
  Sandbox sandbox{MapData::builtInTown()};

  SandboxTest() {
    EXPECT_TRUE(sandbox.start(0));
    QVBackendless::setBaseURL(sandbox.url());
  }

  /// Logs in the way the library does; a header that is named is sent with another value, or
  /// left out.
  quorvelkit::test::Result logIn(const std::string& wrongHeader = "",
                                 const std::optional<std::string>& value = std::nullopt,
                                 const std::optional<std::string>& body = std::nullopt) const {
    URLRequest request = quorvelkit::test::requestFor(sandbox.url() + "/v1/users/login");
    request.setHTTPMethod("POST");
    request.setValue("5E2C9F14-7A03-41BD-C8E6-0F93D27A61B5", "application-id");
    request.setValue("D41F06A3-92BE-4C57-AB08-6E1D3C5F7092", "secret-key");
    request.setValue("REST", "application-type");
    if (!wrongHeader.empty()) request.setValue(value, wrongHeader);
    request.setHTTPBody(
        Data(body.value_or(R"({"login":"sdk-service@quorvel.example","password":"kvm40972"})")));
    return quorvelkit::test::send(std::move(request));
  }
  quorvelkit::test::Result getConfiguration(const std::optional<std::string>& token) const {
    URLRequest request = quorvelkit::test::requestFor(sandbox.url() + configurationPath);
    request.setValue(token, "user-token");
    return quorvelkit::test::send(std::move(request));
  }
};

TEST_F(SandboxTest, checksTheLogin) {
  struct Case {
    const char* header;
    std::optional<std::string> value;
    std::optional<std::string> body;
    int status;
    int code;
  };
  const Case cases[] = {
      {"application-id", "0", {}, 400, 2002},
      {"application-id", {}, {}, 400, 2002},
      {"secret-key", "0", {}, 400, 2002},
      {"secret-key", {}, {}, 400, 2002},
      {"application-type", {}, {}, 400, 2003},
      {"", {}, R"({"login":"sdk-service@quorvel.example","password":"x"})", 401, 3003},
      {"", {}, R"({"login":"x","password":"kvm40972"})", 401, 3003},
      {"", {}, R"({"login":1,"password":"kvm40972"})", 400, 3011},
      {"", {}, R"({"login":"sdk-)", 400, 3011},
      {"", {}, "", 400, 3011}};
  for (const Case& c : cases) {
    const auto result = logIn(c.header, c.value, c.body);
    const JSON body = JSON::parse(result.body());
    EXPECT_EQ(result.status(), c.status) << c.header;
    EXPECT_EQ(body["code"].intValue(), c.code) << c.header;
    EXPECT_FALSE(body["message"].stringValue().empty());
  }
}

TEST_F(SandboxTest, givesTheConfigurationToBearersOfItsTokensOnly) {
  const std::string token = JSON::parse(logIn().body())["user-token"].stringValue();
  EXPECT_EQ(token.size(), 36U);
  EXPECT_NE(JSON::parse(logIn().body())["user-token"].stringValue(), token);
  const auto good = getConfiguration(token);
  EXPECT_EQ(JSON::parse(good.body())["quorvel-navigation-root-url"].stringValue(), sandbox.url());
  EXPECT_EQ(JSON::parse(good.body())["quorvel-find-root-url"].stringValue(), sandbox.url());
  using Token = std::optional<std::string>;
  for (const Token& wrong : {Token(), Token(""), Token(std::string(36, 'A'))}) {
    const auto refused = getConfiguration(wrong);
    EXPECT_EQ(refused.status(), 401);
    EXPECT_EQ(JSON::parse(refused.body())["code"].intValue(), 3064);
  }
}

TEST_F(SandboxTest, knowsWhatItDoesNotHave) {
  const std::vector<std::tuple<std::string, std::string, int>> cases = {
      {"GET", "/", 404},
      {"GET", "/v4/routes", 404},
      {"POST", "/v4/route", 405},
      {"GET", "/v1/users/login", 405},
      {"DELETE", configurationPath, 405},
      {"GET", "/v4/route", 400}};
  for (const auto& [method, path, status] : cases) {
    URLRequest request = quorvelkit::test::requestFor(sandbox.url() + path);
    request.setHTTPMethod(method);
    const auto result = quorvelkit::test::send(std::move(request));
    EXPECT_EQ(result.status(), status) << method << ' ' << path;
    EXPECT_FALSE(JSON::parse(result.body())["message"].stringValue().empty());
  }
}

TEST_F(SandboxTest, takesNoPortThatIsTaken) {
  Sandbox second(MapData::builtInTown());
  EXPECT_FALSE(second.start(std::stoi(sandbox.url().substr(sandbox.url().rfind(':') + 1))));
  EXPECT_EQ(second.url(), "");
}

TEST_F(SandboxTest, leadsTheLibraryThroughTheTown) {
  std::shared_ptr<QVRouteResponse> response;
  const auto request = std::make_shared<QVRouteRequest>(demoStart, demoEnd);
  EXPECT_EQ(QVNavigation::route(request, [&](auto r) { response = std::move(r); }), nullptr);
  ASSERT_TRUE(quorvelkit::test::runMainQueueUntil([&] { return response != nullptr; }));
  ASSERT_FALSE(response->error());
  const QVRoute& route = *response->route();

  std::size_t turns = 0;
  std::set<std::int64_t> interstates;
  std::set<QVStreetConnection> connections;
  std::set<QVTurnDirection> directions;
  for (const QVPoint& point : route.points()) {
    EXPECT_TRUE(point.latitude() && point.longitude() && point.travelTimeInSeconds());
    const QVTurn* turn = point.turn();
    if (turn == nullptr) continue;
    ++turns;
    EXPECT_NE(turn->direction(), QVTurnDirection::unknown);
    EXPECT_TRUE(turn->instruction() && point.say());
    directions.insert(turn->direction());
    ASSERT_NE(turn->street(), nullptr);
    connections.insert(turn->street()->connection());
    const QVHighway* highway = turn->street()->highway();
    if (highway != nullptr && highway->direction() == QVHighwayType::interstate) {
      interstates.insert(highway->number().value_or(0));
    }
  }
  EXPECT_GE(turns, 20U);
  EXPECT_EQ(interstates, (std::set<std::int64_t>{46, 246}));
  for (const auto connection :
       {QVStreetConnection::origin, QVStreetConnection::onramp, QVStreetConnection::interchange,
        QVStreetConnection::offramp, QVStreetConnection::destination}) {
    EXPECT_TRUE(connections.contains(connection)) << rawValue(connection);
  }
  EXPECT_TRUE(directions.contains(QVTurnDirection::exitright));
  EXPECT_GT(route.startNode().value_or(0), std::int64_t{1} << 31);
}

TEST_F(SandboxTest, answersManyAtOnceEachWithItsOwn) {
  Sandbox town(searchTown());
  ASSERT_TRUE(town.start(0));
  QVBackendless::setBaseURL(town.url());
  const Coordinate here{10, 20};
  std::size_t answered = 0;
  std::set<std::size_t> sizes;
  for (int number = 101; number <= 140; ++number) {
    const std::string text = std::to_string(number) + " Harbor Street";
    QVFind::addressCandidates(
        std::make_shared<QVAddressCandidatesRequest>(text, here), [&, text](const auto& response) {
          ++answered;
          ASSERT_FALSE(response->candidates().empty()) << text;
          EXPECT_THAT(*response->candidates().front().matchAddress(), testing::StartsWith(text));
        });
    QVNavigation::route(std::make_shared<QVRouteRequest>(here, Coordinate{10, 20.008}),
                        [&](const auto& response) {
                          ++answered;
                          sizes.insert(response->route()->points().size());
                        });
  }
  ASSERT_TRUE(quorvelkit::test::runMainQueueUntil([&] { return answered == 80; }));
  EXPECT_EQ(sizes.size(), 1U);
  EXPECT_GT(*sizes.begin(), 2U);
}

}  // namespace
}  // namespace quorvelkit::sandbox
