// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QuorvelKitAll.h>

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace quorvelkit {
namespace {

using testing::AllOf, testing::Each, testing::SizeIs;

const auto anyRequest = std::make_shared<QVBaseRequest>();

std::shared_ptr<const URLResponse> status(int code) {
  return std::make_shared<HTTPURLResponse>(*URL::parse("http://a"), code, HTTPHeaderFields());
}
template <class Response>
std::shared_ptr<Response> answer(const std::string& body, int code = 200) {
  return makeResponse<Response>(Data(body), anyRequest, status(code));
}

// The fault table tests responses without an error.
TEST(QVBaseResponseTest, ErrorCombinesTransportStatusAndBody) {
  const Error lost("QuorvelKit.URLError", -1005, {{"failingURL", "http://a"}});
  const Error cancelled = Error::described("Anywhere", -999, "cancelled");
  const Error lostWithBody = Error::described("QuorvelKit.URLError", -1005, "a page");
  const auto http = [](int code, std::string description) {
    return Error::described("QuorvelKit.QVRouteResponse", code, std::move(description));
  };
  // Status, body, error of the transport, error of the response.
  using Row = std::tuple<std::optional<int>, std::optional<std::string>, std::optional<Error>,
                         std::optional<Error>>;
  const std::vector<Row> rows = {
      {std::nullopt, std::nullopt, std::nullopt, std::nullopt},
      {std::nullopt, std::nullopt, lost, lost},
      {std::nullopt, "a page", lost, lostWithBody},
      {std::nullopt, "\xff", lost, lost},
      {std::nullopt, "a page", cancelled, cancelled},
      {200, "no JSON", std::nullopt, std::nullopt},
      {101, "{}", std::nullopt, std::nullopt},
      {399, "moved", std::nullopt, std::nullopt},
      {200, "a page", lost, lostWithBody},
      {400, std::nullopt, std::nullopt, http(400, "bad request")},
      {404, "{\"message\":\"é\"}", lost, http(404, "{\"message\":\"é\"}")},
      {503, std::nullopt, std::nullopt, http(503, "service unavailable")},
      {599, "x", cancelled, http(599, "x")},
      {999, std::nullopt, std::nullopt, http(999, "server error")},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto& [code, body, error, expected] = rows[i];
    const auto response =
        makeResponse<QVRouteResponse>(body ? std::optional(Data(*body)) : std::nullopt, anyRequest,
                                      code ? status(*code) : nullptr, error);
    EXPECT_EQ(response->error(), expected) << "row " << i;
    EXPECT_EQ(response->json().has_value(), body.has_value()) << "row " << i;
    EXPECT_EQ(response->route().has_value(), body && body->starts_with('{')) << "row " << i;
    EXPECT_EQ(response->isCancelled(), expected && expected->code() == URLError::cancelled);
    EXPECT_EQ(response->request(), anyRequest);
  }
  EXPECT_EQ(answer<QVRouteResponse>("no JSON")->json()->type(), JSON::Type::null);
  EXPECT_DEATH(makeResponse<QVRouteResponse>(std::nullopt, nullptr), "needs a request");
  static_assert(!std::is_constructible_v<QVRouteResponse, std::optional<JSON>>);
  static_assert(!std::is_constructible_v<QVRouteResponse, JSON>);
}

TEST(QVBaseResponseTest, ShouldRetryRequestCountsRetriesOfTheRequest) {
  const auto request = std::make_shared<QVBaseRequest>();
  const auto response = makeResponse<QVRouteResponse>(std::nullopt, request);
  for (const auto& [shouldRetry, count] : {std::pair{true, 1}, {true, 2}, {true, 3}, {false, 3}}) {
    EXPECT_EQ(response->shouldRetryRequest(), shouldRetry);
    EXPECT_EQ(request->retryCount(), count);
  }
  request->setMaxNumberOfRetries(INT64_MAX);
  request->setRetryCount(INT64_MAX);
  EXPECT_FALSE(response->shouldRetryRequest());
  response->setRequest(nullptr);
  EXPECT_FALSE(response->shouldRetryRequest());
}

// Records the steps that ran.
template <class Tag>
class Traced : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  std::string steps;

  void processResponse() override { steps += 'r'; }
  void processErrors() override {
    steps += 'e';
    QVBaseResponse::processErrors();
  }
  void processTracking() override { steps += error() ? 'T' : 't'; }

 protected:
  void buildModel() override {
    QVBaseResponse::buildModel();
    steps += 'm';
  }
};

TEST(MakeResponseTest, OverriddenStepsRunInOrder) {
  EXPECT_EQ(answer<Traced<int>>("{}")->steps, "retm");
  EXPECT_EQ(answer<Traced<int>>("{}", 404)->steps, "reTm");
}

std::vector<std::string> domains;
// Adds the error domain of a response class that is local to the enclosing function.
#define ADD_DOMAIN_OF_LOCAL                                     \
  struct Local : QVBaseResponse {                               \
    using QVBaseResponse::QVBaseResponse;                       \
  };                                                            \
  domains.push_back(answer<Local>("", 400)->error()->domain()); \
  return {}
struct Scope {
  int operator()() const { ADD_DOMAIN_OF_LOCAL; }
  int operator[](int) const { ADD_DOMAIN_OF_LOCAL; }
  int operator<(int) const { ADD_DOMAIN_OF_LOCAL; }
  int operator>(int) const { ADD_DOMAIN_OF_LOCAL; }
  int operator<=(int) const { ADD_DOMAIN_OF_LOCAL; }
  int operator<=>(int) const { ADD_DOMAIN_OF_LOCAL; }
  int operator>>=(int) const { ADD_DOMAIN_OF_LOCAL; }
  int operator->() const { ADD_DOMAIN_OF_LOCAL; }
  int operator->*(int) const { ADD_DOMAIN_OF_LOCAL; }
  operator int() const { ADD_DOMAIN_OF_LOCAL; }
  operator std::vector<std::string>() const { ADD_DOMAIN_OF_LOCAL; }
  template <class T>
  int operator<<(T) const {
    ADD_DOMAIN_OF_LOCAL;
  }
  template <class T>
  int operator>(T*) const {
    ADD_DOMAIN_OF_LOCAL;
  }
  template <class T>
  static int suboperator(std::enable_if_t<(sizeof(T) < 9), T>) {
    ADD_DOMAIN_OF_LOCAL;
  }
  static std::string taggedByTheCompiler() { ADD_DOMAIN_OF_LOCAL; }
};
const auto inLambda = []() -> int { ADD_DOMAIN_OF_LOCAL; };
#undef ADD_DOMAIN_OF_LOCAL

TEST(MakeResponseTest, ErrorDomainContainsTheClassName) {
  struct Local : QVBaseResponse {
    using QVBaseResponse::QVBaseResponse;
  };
  const Scope scope;
  const auto evaluate = [](const auto&... values) { return sizeof...(values); };
  const std::size_t count = evaluate(
      inLambda(), Scope::taggedByTheCompiler(), Scope::suboperator<int>(0), scope(), scope[0],
      (scope < 0), (scope > 0), scope <= 0, scope <=> 0, scope >>= 0, scope.operator->(), scope->*0,
      scope.operator int(), scope.operator std::vector<std::string>(), scope << 0, scope > &scope);
  domains.push_back(answer<Local>("", 400)->error()->domain());
  EXPECT_THAT(domains, AllOf(SizeIs(count + 1), Each("QuorvelKit.Local")));
  EXPECT_EQ(answer<QVBaseResponse>("", 400)->error()->domain(), "QuorvelKit.QVBaseResponse");
  EXPECT_EQ((answer<Traced<std::pair<Local, int>>>("", 400)->error()->domain()),
            "QuorvelKit.Traced");
}

TEST(QVRouteResponseTest, EveryJSONBodyMakesARoute) {
  const std::optional<std::size_t> absent;
  const std::pair<const char*, std::optional<std::size_t>> bodies[] = {
      {R"({"points":[{},null]})", 2},
      {"{}", 0},
      {"[]", 0},
      {"7", 0},
      {"null", 0},
      {"\xEF\xBB\xBF\r\n null\t", 0},
      {"", absent},
      {" ", absent},
      {"nul", absent},
      {"null null", absent},
      {R"({"points":[{}])", absent},
      {"<html></html>", absent},
      {"\xff", absent}};
  for (const auto& [body, points] : bodies) {
    for (const int code : {200, 404}) {
      const auto response = answer<QVRouteResponse>(body, code);
      const auto& route = response->route();
      EXPECT_EQ(route ? std::optional(route->points().size()) : absent, points) << body;
      EXPECT_FALSE(response->json()->error()) << body;
      EXPECT_TRUE(answer<QVAddressCandidatesResponse>(body, code)->candidates().empty()) << body;
      EXPECT_TRUE(answer<QVSuggestResponse>(body, code)->suggestions().empty()) << body;
    }
    std::optional<Error> reason;
    JSON(Data(body), JSONReadingOptions::allowFragments, &reason);
    EXPECT_EQ(reason.has_value(), !points) << body;
  }
  // A response that parses a format of its own.
  struct Lines : QVRouteResponse {
    using QVRouteResponse::QVRouteResponse;
    void processResponse() override { setJSON(JSON::parse(R"({"points":[1]})")); }
  };
  EXPECT_EQ(answer<Lines>("1 2")->route()->points().size(), 1U);
}

// A response whose json() is not the body.
template <class Response>
class Overridden : public Response {
 public:
  using Response::Response;
  const std::optional<JSON>& json() const override { return own_; }

 private:
  std::optional<JSON> own_ = JSON::parse(
      R"({"points":[0,1],"candidates":[0,1],"suggestions":[0,1],"address":{"City":"B"},
          "user-token":"t","quorvel-find-root-url":"r"})");
};

TEST(MakeResponseTest, ModelsAreMadeFromTheOverriddenJSON) {
  EXPECT_EQ(answer<Overridden<QVRouteResponse>>("{}")->route()->points().size(), 2U);
  EXPECT_EQ(answer<Overridden<QVAddressCandidatesResponse>>("{}")->candidates().size(), 2U);
  EXPECT_EQ(answer<Overridden<QVSuggestResponse>>("{}")->suggestions().size(), 2U);
  EXPECT_EQ(answer<Overridden<QVReverseGeocodeResponse>>("{}")->address()->city(), "B");
  EXPECT_EQ(answer<Overridden<QVLoginResponse>>("{}")->userToken(), "t");
  EXPECT_EQ(answer<Overridden<QVConfigurationResponse>>("{}")->quorvelFindRootURL(), "r");
}

TEST(MakeResponseTest, ListsContainAllElementsOfAnArray) {
  const std::pair<std::string, std::size_t> lists[] = {
      {"[]", 0},   {"[{}]", 1},        {R"([{},null,"x",[{}]])", 4},
      {"null", 0}, {R"({"a":{}})", 0}, {"7", 0}};
  for (const auto& [list, count] : lists) {
    const std::string body =
        R"({"points":)" + list + R"(,"candidates":)" + list + R"(,"suggestions":)" + list + "}";
    EXPECT_EQ(answer<QVRouteResponse>(body)->route()->points().size(), count) << list;
    EXPECT_EQ(answer<QVAddressCandidatesResponse>(body)->candidates().size(), count) << list;
    EXPECT_EQ(answer<QVSuggestResponse>(body)->suggestions().size(), count) << list;
  }
  EXPECT_FALSE(answer<QVSuggestResponse>(R"({"error":{"code":400,"message":"no"}})")->error());
}

TEST(QVReverseGeocodeResponseTest, AddressIsPresentForEveryBody) {
  const auto found = answer<QVReverseGeocodeResponse>(
      R"({"address":{"City":"B"},"location":{"x":-89.65,"y":39.78}})");
  EXPECT_EQ(found->location(), (Coordinate{39.78, -89.65}));
  EXPECT_EQ(found->address()->city(), "B");
  for (const char* body : {"{}", R"({"address":"B","location":"x"})", "no JSON"}) {
    const auto other = answer<QVReverseGeocodeResponse>(body);
    EXPECT_EQ(other->location(), Coordinate()) << body;
    ASSERT_TRUE(other->address()) << body;
    EXPECT_EQ(other->address()->city(), std::nullopt) << body;
  }
  const auto nothing = makeResponse<QVReverseGeocodeResponse>(std::nullopt, anyRequest);
  EXPECT_FALSE(nothing->location() || nothing->address());
}

}  // namespace
}  // namespace quorvelkit
