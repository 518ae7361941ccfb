// SPDX-License-Identifier: Apache-2.0
// Requests as servers receive them: header lines, bodies, connections, cookies, proxies, TLS.
#include "tests/support/Call.h"
#include "tests/support/Certificates.h"
#include "tests/support/TestServer.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <latch>
#include <map>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;
using namespace quorvelkit::test;
using testing::AllOf;
using testing::Field;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

URLRequest request(const char* method, std::optional<std::string> body = std::nullopt,
                   std::vector<HTTPHeaderFields::Field> fields = {}) {
  URLRequest made = requestFor("http://127.0.0.1/", method, std::move(body));
  for (const auto& [name, value] : fields)
    made.setValue(value, name);
  return made;
}

TEST(RequestTest, RequestIsSentAsSet) {
  const auto has = [](const char* text) { return HasSubstr(text); };
  const auto lacks = [](const char* text) { return Not(HasSubstr(text)); };
  const std::tuple<const char*, URLRequest, testing::Matcher<std::string>> cases[] = {
      {"GET", request("get"),
       AllOf(StartsWith("GET /a/../b%7e?c=d&e HTTP/1.1\r\n"), has("Accept: */*\r\n"),
             has("Accept-Encoding: gzip\r\n"), has("User-Agent: QuorvelKit/"), lacks("Content-"),
             lacks("#"))},
      {"HEAD", request("Head"), AllOf(StartsWith("HEAD /"), lacks("Content-"))},
      {"POST", request("post", "a=b"),
       AllOf(StartsWith("POST /"), has("Content-Length: 3\r\n"),
             has("Content-Type: application/x-www-form-urlencoded\r\n"))},
      {"POST with a content type", request("POST", "{}", {{"content-type", "application/json"}}),
       AllOf(has("content-type: application/json\r\n"), lacks("form"))},
      {"POST without a body", request("POST"),
       AllOf(has("Content-Length: 0\r\n"), lacks("Content-Type"))},
      {"POST with a large body", request("POST", std::string(2'000'000, 'x')),
       AllOf(lacks("Expect"), has("Content-Length: 2000000"))},
      {"PUT", request("put", "x"),
       AllOf(StartsWith("PUT /"), has("Content-Length: 1\r\n"), lacks("Content-Type"))},
      {"DELETE", request("delete"), AllOf(StartsWith("DELETE /"), lacks("Content-"))},
      {"DELETE with a body", request("DELETE", "x"), has("Content-Length: 1\r\n")},
      {"custom method", request("pAtCh", "x"), StartsWith("pAtCh /")},
      {"binary body", request("POST", std::string("\0\xff\r\n", 4)), has("Content-Length: 4\r\n")},
      {"custom fields",
       request("GET", {},
               {{"x-oWn", "v"},
                {"Empty", ""},
                {"Accept", "a/b"},
                {"User-Agent", "me"},
                {"Accept-Encoding", "identity"},
                {"Authorization", "secret"}}),
       AllOf(has("x-oWn: v\r\n"), has("Empty:\r\n"), has("Accept: a/b\r\n"),
             has("User-Agent: me\r\n"), has("Accept-Encoding: identity\r\n"),
             has("Authorization: secret\r\n"), lacks("*/*"), lacks("QuorvelKit"), lacks("gzip"))},
      {"fields that the session sets",
       request("POST", "abc",
               {{"Host", "evil"},
                {"content-length", "1"},
                {"Connection", "close"},
                {"Transfer-Encoding", "chunked"},
                {"Expect", "100-continue"},
                {"Proxy-Authorization", "x"}}),
       AllOf(lacks("evil"), has("Content-Length: 3\r\n"), lacks("close"), lacks("chunked"),
             lacks("100-"), lacks("Proxy"))},
  };
  const Awaited<ReceivedRequest> seen;
  const TestServer server([&](const auto& received, auto& connection) {
    seen.set(received);
    connection.answer(200);
  });
  std::map<std::string, std::string> headerBlocks;
  const auto sendCase = [&](const auto& each, const auto& session) {
    URLRequest sent = std::get<URLRequest>(each);
    sent.setURL(*URL::parse(server.url("/a/../b%7e?c=d&e#f")));
    EXPECT_EQ(send(sent, session).code(), 0);
  };
  for (const auto& each : cases) {
    const auto& [name, base, headerBlock] = each;
    SCOPED_TRACE(name);
    sendCase(each, URLSession::make());
    EXPECT_THAT(seen.get().headerBlock, headerBlock);
    EXPECT_EQ(seen.get().body, base.httpBody().value_or(Data()).view());
    EXPECT_EQ(seen.get().value("Host"), "127.0.0.1:" + std::to_string(server.port()));
    headerBlocks[name] = seen.get().headerBlock;
  }
  // The result does not depend on the request before, which may use the same easy handle.
  const auto session = URLSession::make();
  for (const auto& before : cases) {
    for (const auto& each : cases) {
      sendCase(before, session);
      sendCase(each, session);
      EXPECT_EQ(seen.get().headerBlock, headerBlocks[std::get<0>(each)])
          << "after " << std::get<0>(before);
    }
  }
}

TEST(RequestTest, ReusesAtMostSixConnections) {
  std::latch six(6);
  const TestServer server([&](const auto& received, auto& connection) {
    if (received.target == "/together") six.arrive_and_wait();
    connection.answer(200, received.target);
  });
  const auto session = URLSession::make();
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(send(requestFor(server.url()), session).code(), 0);
  EXPECT_EQ(server.connectionCount(), 1);
  // The latch opens only if six connections are open at the same time. The other requests wait for
  // a connection. They must start when one is free, also the last ones of each round, when there is
  // no other event that wakes the IO thread.
  for (int round = 0; round < 100; ++round) {
    std::list<Call> calls;
    for (int i = 0; i < 64; ++i) {
      const std::string path = round == 0 && i < 6 ? "/together" : "/" + std::to_string(i);
      calls.emplace_back(requestFor(server.url(path)), session);
      calls.back().task->resume();
    }
    for (const Call& call : calls)
      ASSERT_EQ(call.result().body(), call.task->originalRequest().url().path());
  }
  EXPECT_EQ(server.connectionCount(), 6);
}

// The server reads a second request on the same connection and closes without an answer.
TEST(RequestTest, OnlyIdempotentRequestIsRepeatedAfterClose) {
  for (const std::string method : {"GET", "PUT", "POST", "PATCH", "own"}) {
    SCOPED_TRACE(method);
    std::atomic<int> seen = 0;
    const TestServer server([&](Connection& connection) {
      while (const auto received = connection.read()) {
        if (received->target == "/second" && ++seen == 1) return;
        connection.answer(200);
      }
    });
    const auto session = URLSession::make();
    ASSERT_EQ(send(requestFor(server.url("/first")), session).code(), 0);
    const bool idempotent = method == "GET" || method == "PUT";
    EXPECT_EQ(send(requestFor(server.url("/second"), method), session).code(),
              idempotent ? 0 : URLError::networkConnectionLost);
    EXPECT_EQ(seen, idempotent ? 2 : 1);
  }
}

TEST(RequestTest, CookiesBelongToSessionAndAreSentInOneLine) {
  std::string lastCookie;
  const TestServer server([&](const auto& received, auto& connection) {
    lastCookie = received.value("Cookie");
    connection.answer(200, "",
                      received.target == "/set"
                          ? "Set-Cookie: a=1\r\nSet-Cookie: gone=2; Max-Age=0\r\n"
                            "Set-Cookie: deep=3; Path=/deep\r\n"
                          : "");
  });
  const auto session = URLSession::make();
  const auto cookieSeen = [&](const char* path, const std::shared_ptr<URLSession>& by,
                              std::optional<std::string_view> own = std::nullopt) {
    URLRequest sent = requestFor(server.url(path));
    sent.setValue(own, "Cookie");
    EXPECT_EQ(send(sent, by).code(), 0);
    return lastCookie;
  };
  EXPECT_EQ(cookieSeen("/set", session), "(none)");
  EXPECT_EQ(cookieSeen("/", session), "a=1");
  EXPECT_EQ(cookieSeen("/deep/", session), "deep=3; a=1");
  EXPECT_EQ(cookieSeen("/", session, "own=6"), "a=1; own=6");
  EXPECT_EQ(cookieSeen("/", session), "a=1");
  EXPECT_EQ(cookieSeen("/", URLSession::make()), "(none)");
  EXPECT_EQ(cookieSeen("/", URLSession::make(), "own=6"), "own=6");
}

TEST(RequestTest, ProxyIsReadFromConfigurationOnly) {
  const std::string dead = "http://127.0.0.1:" + std::to_string(unusedPort());
  for (const char* name : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"})
    setenv(name, dead.c_str(), 1);
  setenv("no_proxy", "*", 1);
  const TestServer server(
      [](const auto& received, auto& connection) { connection.answer(200, received.target); });
  EXPECT_EQ(send(requestFor(server.url("/direct"))).body(), "/direct");
  const auto sendBy = [](const std::string& proxy, URLRequest sent) {
    return send(std::move(sent), URLSession::make({.proxy = proxy}));
  };
  EXPECT_EQ(sendBy(server.url(""), requestFor("http://far.invalid/away")).body(),
            "http://far.invalid/away");
  // The credentials in the URL are percent-encoded and end at the last "@".
  const TestServer authenticating([](const auto& received, auto& connection) {
    connection.answer(200, received.value("Proxy-Authorization"));
  });
  EXPECT_EQ(sendBy("http://us%65r:p@ss@" + authenticating.url("").substr(7),
                   requestFor("http://far.invalid/"))
                .body(),
            "Basic dXNlcjpwQHNz");
  // For https, the proxy receives only the host and the port.
  const Awaited<std::string> proxyHeader;
  const TestServer closing([&](Connection& connection) {
    if (const auto received = connection.readHeaderBlock()) proxyHeader.set(received->headerBlock);
  });
  URLRequest secret = requestFor("https://far.invalid/secret");
  for (const char* name : {"Authorization", "Cookie"})
    secret.setValue("secret", name);
  EXPECT_EQ(sendBy(closing.url(""), secret).code(), URLError::networkConnectionLost);
  EXPECT_TRUE(proxyHeader.get().starts_with("CONNECT far.invalid:443 ")) << proxyHeader.get();
  EXPECT_EQ(proxyHeader.get().find("secret"), std::string::npos) << proxyHeader.get();
}

// Writing to a closed TLS connection raises SIGPIPE, which would end this process.
TEST(RequestTest, BrokenPipeRaisesNoSignal) {
  const Certificates certificates;
  const TestServer server(
      [](Connection& connection) {
        connection.readHeaderBlock();
        connection.reset();
      },
      certificates.tls("good"));
  const auto session = URLSession::make({.caFile = certificates.caFile()});
  const URLRequest sent = requestFor(server.url(), "POST", std::string(5'000'000, 'x'));
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(send(sent, session).code(), URLError::networkConnectionLost);
}

}  // namespace
}  // namespace quorvelkit
