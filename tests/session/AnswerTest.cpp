// SPDX-License-Identifier: Apache-2.0
// What a session makes of the answers of servers, good and bad.
#include "tests/support/AnswerText.h"
#include "tests/support/Call.h"
#include "tests/support/TestServer.h"

#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/URLError.h>

#include <gmock/gmock.h>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;
using namespace quorvelkit::test;
using Script = TestServer::Script;

constexpr std::size_t bodyLimit = 100'000;

std::shared_ptr<URLSession> limitedSession() {
  URLSessionConfiguration configuration;
  configuration.maximumBodySize = bodyLimit;
  return URLSession::make(configuration);
}

// "hello hello hello" as gzip makes it.
const std::string gzip(
    "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xcb\x48\xcd\xc9\xc9\x57\xc8\x40"
    "\x90\x00\x80\x88\xf9\xe5\x11\x00\x00\x00",
    28);

const std::string ok = "HTTP/1.1 200 OK\r\n";
const std::string okGzip = ok + "Content-Encoding: gzip\r\n";
const std::string okChunked = ok + "Transfer-Encoding: chunked\r\n";

struct GoodCase {
  const char* name;
  std::string answer;
  int status;
  std::string body;
};

TEST(AnswerTest, WholeAnswersAreDelivered) {
  const GoodCase cases[] = {
      {"length", withLength(ok, "body"), 200, "body"},
      {"chunks", okChunked + "\r\n" + chunked("many pieces", 3), 200, "many pieces"},
      {"until close", ok + "\r\nbody", 200, "body"},
      {"HTTP/1.0", "HTTP/1.0 200 OK\r\n\r\nbody", 200, "body"},
      {"no body", withLength(ok, ""), 200, ""},
      {"204", "HTTP/1.1 204 No Content\r\n\r\n", 204, ""},
      {"304", "HTTP/1.1 304 Not Modified\r\nContent-Length: 5\r\n\r\n", 304, ""},
      {"300", withLength("HTTP/1.1 300 Choices\r\nLocation: /b\r\n", "choose"), 300, "choose"},
      {"404", withLength("HTTP/1.1 404 Not Found\r\n", "nothing"), 404, "nothing"},
      {"401", withLength("HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=x\r\n", "who"), 401,
       "who"},
      {"500", withLength("HTTP/1.1 500 Oops\r\n", "<html>"), 500, "<html>"},
      {"999", withLength("HTTP/1.1 999 What\r\n", "x"), 999, "x"},
      {"interim answers", "HTTP/1.1 103 Early Hints\r\nX: early\r\n\r\n" + withLength(ok, "body"),
       200, "body"},
      {"bare line feeds", "HTTP/1.1 200 OK\nContent-Length: 4\n\nbody", 200, "body"},
      {"gzip", withLength(okGzip, gzip), 200, "hello hello hello"},
      {"x-gzip until close", ok + "Content-Encoding: x-gzip\r\n\r\n" + gzip, 200,
       "hello hello hello"},
      {"gzip in chunks", okGzip + "Transfer-Encoding: chunked\r\n\r\n" + chunked(gzip, 3), 200,
       "hello hello hello"},
      {"gzip in chunks of 10 bytes",
       okGzip + "Transfer-Encoding: chunked\r\n\r\n" + chunked(gzip, 10), 200, "hello hello hello"},
      {"no gzip to decode", withLength(okGzip, ""), 200, ""},
      {"at the limit", withLength(ok, std::string(bodyLimit, 'x')), 200,
       std::string(bodyLimit, 'x')},
  };
  for (const auto& [name, answer, status, body] : cases) {
    SCOPED_TRACE(name);
    const TestServer server(TestServer::answeringOnce(answer));
    const Result result = send(requestFor(server.url()), limitedSession());
    ASSERT_EQ(result.code(), 0);
    EXPECT_EQ(result.status(), status);
    ASSERT_TRUE(result.data);
    EXPECT_EQ(result.body(), body);
    EXPECT_EQ(result.response->url().absoluteString(), server.url());
  }
}

// A head that begins with a folded line continues nothing, least of all the answer before it.
TEST(AnswerTest, AFoldedLineContinuesNoOtherAnswer) {
  const TestServer server(TestServer::answering([](const auto& request, Connection& connection) {
    const bool isFolded = request.target == "/folded";
    connection.send(
        withLength(ok + (isFolded ? " folded: 3\r\n" : "First: 1\r\nLast: 2\r\n"), "body"));
  }));
  const auto session = limitedSession();
  for (const char* path : {"/", "/folded", "/", "/folded"}) {
    const Result result = send(requestFor(server.url(path)), session);
    ASSERT_TRUE(result.response || result.error);
    if (const auto* http = dynamic_cast<const HTTPURLResponse*>(result.response.get())) {
      EXPECT_EQ(http->value("Last").has_value(), std::string_view(path) == "/");
    }
  }
}

TEST(AnswerTest, HeaderFieldsKeepTheirSpellingAndJoin) {
  const TestServer server(TestServer::answeringOnce(withLength(
      "HTTP/1.1 103 Hints\r\nX-Early: x\r\n\r\n" + ok +
          "x-Odd-CASE:  value \t\r\nSet-Cookie: a=1\r\nset-cookie: b=2\r\n"
          "Folded: one\r\n \t two\r\nEmpty:\r\nContent-Type: Text/HTML; charset=\"utf-8\"\r\n",
      "body")));
  const Result result = send(requestFor(server.url()));
  const auto& response = dynamic_cast<const HTTPURLResponse&>(*result.response);
  EXPECT_EQ(response.headerFields().all().front(),
            (HTTPHeaderFields::Field{"x-Odd-CASE", "value"}));
  EXPECT_EQ(response.value("X-ODD-case"), "value");
  EXPECT_EQ(response.value("set-Cookie"), "a=1, b=2");
  EXPECT_EQ(response.value("folded"), "one two");
  EXPECT_EQ(response.value("empty"), "");
  EXPECT_FALSE(response.value("X-Early"));
  EXPECT_EQ(response.mimeType(), "text/html");
  EXPECT_EQ(response.textEncodingName(), "utf-8");
  EXPECT_EQ(response.expectedContentLength(), 4);
}

TEST(AnswerTest, RequestsThatCannotBeSentFail) {
  using E = URLError;
  URLRequest getWithBody = requestFor("http://127.0.0.1/");
  getWithBody.setHTTPBody(Data("body"));
  const struct {
    URLRequest request;
    std::int64_t code;
  } cases[] = {
      {requestFor("ftp://127.0.0.1/"), E::unsupportedURL},
      {requestFor("file:///etc/hosts"), E::unsupportedURL},
      {requestFor("relative/path"), E::unsupportedURL},
      {requestFor("//127.0.0.1/"), E::unsupportedURL},
      {requestFor("http:"), E::badURL},
      {requestFor("http:///path"), E::badURL},
      {requestFor("http://h%20x.test/"), E::badURL},
      {requestFor("HTTP://127.0.0.1:" + std::to_string(unusedPort())), E::cannotConnectToHost},
      {getWithBody, E::dataLengthExceedsMaximum},
  };
  for (const auto& [request, code] : cases) {
    SCOPED_TRACE(request.url().absoluteString());
    EXPECT_EQ(send(request).code(), code);
  }
}

// A call that stands still with the same time-out, and begins later, tells when that is over.
TEST(AnswerTest, ASlowUploadThatMovesIsNoTimeOut) {
  constexpr auto timeout = 1s;
  constexpr std::size_t size = 40'000'000, piece = 200'000;
  const TestServer silent([](Connection& connection) { connection.stall(); });
  URLRequest standing = requestFor(silent.url());
  standing.setTimeoutInterval(timeout);
  const Call clock(standing);
  const TestServer server([&](Connection& connection) {
    connection.readHead();
    clock.task->resume();
    std::size_t taken = 0;
    for (; !clock.isDoneIn(5ms) && taken + piece < size; taken += piece)
      connection.take(piece);
    clock.result();
    connection.take(size - taken);
    connection.send(withLength(ok, "at last"));
    connection.stall();
  });
  URLRequest request = requestFor(server.url());
  request.setHTTPMethod("POST");
  request.setHTTPBody(Data(std::string(size, 'x')));
  request.setTimeoutInterval(timeout);
  EXPECT_EQ(send(request).body(), "at last");
}

TEST(AnswerTest, TheWholeTransferHasALimitToo) {
  const TestServer server([](Connection& connection) {
    connection.read();
    connection.send(okChunked + "\r\n");
    while (connection.send("1\r\nx\r\n")) {
    }
  });
  URLSessionConfiguration configuration;
  configuration.timeoutIntervalForResource = 200ms;
  EXPECT_EQ(send(requestFor(server.url()), URLSession::make(configuration)).code(),
            URLError::timedOut);
}

}  // namespace
}  // namespace quorvelkit
