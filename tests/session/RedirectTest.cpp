// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Call.h"
#include "tests/support/TestServer.h"

#include <gmock/gmock.h>

namespace quorvelkit {
namespace {

using namespace quorvelkit::test;

// Answers "/STATUS?LOCATION" with a redirect, and other targets with a copy of the request.
void redirect(const ReceivedRequest& received, Connection& connection) {
  const std::size_t question = received.target.find('?');
  if (question != std::string::npos) {
    connection.answer(std::stoi(received.target.substr(1)), "redirect body",
                      "Location: " + received.target.substr(question + 1) + "\r\n");
  } else {
    connection.answer(200, received.method + ' ' + received.target + ' ' + received.body,
                      "Seen: " + received.value("Authorization") + ',' + received.value("Accept") +
                          ',' + received.value("Content-Type") + ',' + received.value("Cookie") +
                          "\r\n");
  }
}

TEST(RedirectTest, MethodDependsOnStatus) {
  const TestServer server(redirect);
  const std::tuple<int, const char*, std::optional<std::string>, const char*> cases[] = {
      {301, "GET", {}, "GET /to "},       {301, "POST", "b", "GET /to "},
      {301, "PUT", "b", "PUT /to b"},     {302, "POST", "b", "GET /to "},
      {302, "DELETE", {}, "DELETE /to "}, {303, "POST", "b", "GET /to "},
      {303, "PUT", "b", "GET /to "},      {303, "DELETE", {}, "GET /to "},
      {305, "POST", "b", "POST /to b"},   {306, "GET", {}, "GET /to "},
      {307, "POST", "b", "POST /to b"},   {308, "PUT", "b", "PUT /to b"},
      {308, "POST", {}, "POST /to "},
  };
  for (const auto& [status, method, body, seen] : cases) {
    SCOPED_TRACE(std::to_string(status) + ' ' + method);
    const std::string url = server.url("/" + std::to_string(status) + "?/to");
    EXPECT_EQ(send(requestFor(url, method, body)).body(), seen);
  }
}

TEST(RedirectTest, LocationIsResolvedOrAnswerIsDelivered) {
  const TestServer target(redirect);
  const std::string port = std::to_string(target.port());
  // The path of the final URL, or null if the redirect is not followed. The fault table has further
  // redirects that are not followed.
  std::vector<std::pair<std::string, const char*>> cases = {
      {"to", "/dir/to#kept"},
      {"./a/../to#own", "/dir/to#own"},
      {"/to#", "/to#"},
      {"//127.0.0.1:" + port + "/to", "/to#kept"},
      {"HTTP://127.0.0.1:" + port + "/to", "/to#kept"}};
  for (const char* location :
       {"", "a%20b%zz", "a|b", "javascript:alert(1)", "http:///to", "http://127.0.0.1:99999/to"})
    cases.emplace_back(location, nullptr);
  for (const auto& [location, path] : cases) {
    SCOPED_TRACE(location);
    const std::string field = "Location: " + location + "\r\n";
    const TestServer server([&](const auto& received, auto& connection) {
      if (received.target != "/dir/from") return connection.answer(200);
      connection.answer(302, "delivered", field);
    });
    const Result result = send(requestFor(server.url("/dir/from#kept")));
    EXPECT_EQ(result.status(), path ? 200 : 302);
    EXPECT_EQ(result.body() == "delivered", !path);
    EXPECT_THAT(result.response->url().absoluteString(),
                testing::EndsWith(path ? path : "/dir/from#kept"));
  }
}

TEST(RedirectTest, FailsAfterTwentyRedirects) {
  const TestServer server([](const auto& received, auto& connection) {
    const int left = std::stoi(received.target.substr(1));
    if (left == 0) return connection.answer(200, "end");
    connection.answer(302, "", "Location: /" + std::to_string(left - 1) + "\r\n");
  });
  EXPECT_EQ(send(requestFor(server.url("/20"))).body(), "end");
  EXPECT_EQ(send(requestFor(server.url("/21"))).code(), URLError::httpTooManyRedirects);
}

TEST(RedirectTest, OtherOriginGetsNoSecretsAndNoBody) {
  const TestServer target(redirect), server(redirect);
  const auto seen = [&](const std::string& url, const char* method,
                        std::optional<std::string> body = std::nullopt) {
    URLRequest request = requestFor(url, method, std::move(body));
    request.setValue("secret", "Authorization");
    request.setValue("a/b", "Accept");
    request.setValue("c/d", "Content-Type");
    request.setValue("own=1", "Cookie");
    const Result result = send(request);
    return std::string(result.header("Seen").value_or(std::to_string(result.status())));
  };
  const std::string here = server.url("/to"), there = target.url("/to");
  EXPECT_EQ(seen(server.url("/307?" + here), "POST", "body"), "secret,a/b,c/d,own=1");
  EXPECT_EQ(seen(server.url("/307?" + there), "GET"), "(none),a/b,c/d,(none)");
  EXPECT_EQ(seen(server.url("/307?" + there), "POST", ""), "(none),a/b,c/d,(none)");
  EXPECT_EQ(seen(server.url("/307?" + there), "POST", "body"), "307");
  // A redirect back to the first origin does not restore dropped fields.
  EXPECT_EQ(seen(server.url("/302?" + target.url("/302?" + here)), "GET"), "(none),a/b,c/d,(none)");
}

}  // namespace
}  // namespace quorvelkit
