// SPDX-License-Identifier: Apache-2.0
// How a session handles valid and invalid answers.
#include "tests/support/Call.h"
#include "tests/support/TestServer.h"

#include <QuorvelPlatform/HTTPURLResponse.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;
using namespace quorvelkit::test;

const std::string ok = "HTTP/1.1 200 OK\r\n";
const std::string okChunked = ok + "Transfer-Encoding: chunked\r\n";

const std::string goodAnswer = withLength(ok + "First: 1\r\nLast: 2\r\n", "body");

// A folded line that follows the status line must not be appended to a field of the answer before.
TEST(AnswerTest, FoldedFirstHeaderLineFails) {
  const std::string early = "HTTP/1.1 103 Hints\r\n";
  const std::string headerBlocks[] = {
      ok + " folded: 3\r\n",
      ok + "\tfolded: 3\r\nOther: 4\r\n",
      "http/1.1 200 OK\r\n folded: 3\r\n",
      early + " folded: 3\r\n\r\n" + ok + "Other: 4\r\n",
      early + "\r\n" + ok + " folded: 3\r\n",
      early + "\rx: y\r\n" + ok + " folded: 3\r\n",
  };
  for (const std::string& headerBlock : headerBlocks) {
    SCOPED_TRACE(headerBlock);
    const TestServer server([&](const auto& request, auto& connection) {
      connection.send(request.target == "/good" ? goodAnswer : withLength(headerBlock, "body"));
    });
    const auto session = URLSession::make();
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(send(requestFor(server.url("/good")), session).header("Last"), "2");
      EXPECT_EQ(send(requestFor(server.url("/folded")), session).code(),
                URLError::cannotParseResponse);
    }
  }
}

TEST(AnswerTest, FoldedTrailerOfProxyFails) {
  const TestServer proxy([](const auto& request, auto& connection) {
    connection.send(request.method == "GET"
                        ? goodAnswer
                        : "HTTP/1.1 407 Who\r\nProxy-Authenticate: Basic realm=x\r\n"
                          "Transfer-Encoding: chunked\r\n\r\n0\r\n folded: 3\r\n\r\n");
    if (request.method != "GET") connection.close();
  });
  const auto session = URLSession::make({.proxy = proxy.url("")});
  EXPECT_EQ(send(requestFor("http://a.test/"), session).header("Last"), "2");
  EXPECT_EQ(send(requestFor("https://a.test/"), session).code(), URLError::networkConnectionLost);
}

TEST(AnswerTest, HeaderFieldsKeepSpellingAndAreJoined) {
  const TestServer server([](const auto&, auto& connection) {
    connection.send(withLength("HTTP/1.1 103 Hints\r\nX-Early: x\r\n\r\n" + ok +
                                   "x-Odd-CASE:  value \t\r\nSet-Cookie: a=1\r\n"
                                   "set-cookie: b=2\r\nFolded: one\r\n \t two\r\nEmpty:\r\n",
                               "body"));
  });
  const Result result = send(requestFor(server.url()));
  const auto& response = dynamic_cast<const HTTPURLResponse&>(*result.response);
  EXPECT_EQ(response.headerFields().all().front().first, "x-Odd-CASE");
  EXPECT_EQ(response.value("X-ODD-case"), "value");
  EXPECT_EQ(response.value("set-Cookie"), "a=1, b=2");
  EXPECT_EQ(response.value("folded"), "one two");
  EXPECT_EQ(response.value("empty"), "");
  EXPECT_FALSE(response.value("X-Early"));
}

// The announced size decides how the memory of a body is allocated. The memory of a large body is
// used again when its last copy has been destroyed.
TEST(AnswerTest, BodiesOfAllSizesArriveUnchanged) {
  std::minstd_rand random(1);
  std::string bytes(5'001'000, '\0');
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random() & 0x7FU); });
  const auto bodyOf = [&](std::size_t size) { return bytes.substr(size % 1000, size); };
  const TestServer server([&](const auto& request, auto& connection) {
    connection.send(withLength(ok, bodyOf(std::stoul(request.target.substr(1)))));
  });
  const auto session = URLSession::make();
  std::vector<std::size_t> sizes = {1, 4'096, 131'071, 131'072, 1'048'576, 1'048'577, 5'000'000};
  for (int i = 0; i < 40; ++i)
    sizes.push_back(131'072 + random() % 1'000'000);
  std::map<std::size_t, Result> results;
  for (const std::size_t size : sizes) {
    results[size] = send(requestFor(server.url("/" + std::to_string(size))), session);
    for (const auto& [each, result] : results)
      EXPECT_TRUE(result.body() == bodyOf(each)) << each;
    if (results.size() > 5)
      results.erase(std::next(results.begin(), static_cast<int>(random() % 5)));
  }
}

TEST(AnswerTest, InvalidRequestsFail) {
  using E = URLError;
  const std::pair<const char*, std::int64_t> cases[] = {
      {"ftp://127.0.0.1/", E::unsupportedURL},
      {"file:///etc/hosts", E::unsupportedURL},
      {"relative/path", E::unsupportedURL},
      {"//127.0.0.1/", E::unsupportedURL},
      {"http:", E::badURL},
      {"http:///path", E::badURL},
      {"http://h%20x.test/", E::badURL},
  };
  for (const auto& [url, code] : cases)
    EXPECT_EQ(send(requestFor(url)).code(), code) << url;
  EXPECT_EQ(send(requestFor("http://127.0.0.1/", "GET", "body")).code(),
            E::dataLengthExceedsMaximum);
}

// The fault table has slow answers.
TEST(AnswerTest, SlowUploadDoesNotTimeOut) {
  constexpr auto timeout = 4s;  // Longer than a busy machine delays a thread.
  constexpr std::size_t size = 40'000'000, piece = 200'000;
  const TestServer server([&](Connection& connection) {
    connection.readHeaderBlock();
    std::size_t left = size;
    repeatUntilTimeout(timeout, 25ms,
                       [&] { left -= connection.take(std::min(piece, left)).value_or("").size(); });
    connection.take(left);
    connection.send(withLength(ok, "at last"));
    connection.stall();
  });
  URLRequest request = requestFor(server.url(), "POST", std::string(size, 'x'));
  request.setTimeoutInterval(timeout);
  EXPECT_EQ(send(request).body(), "at last");
}

TEST(AnswerTest, EndlessAnswerFailsAfterResourceTimeout) {
  const TestServer server([](Connection& connection) {
    connection.read();
    connection.send(okChunked + "\r\n");
    while (connection.send("1\r\nx\r\n")) {
    }
  });
  const auto session = URLSession::make({.timeoutIntervalForResource = 200ms});
  EXPECT_EQ(send(requestFor(server.url()), session).code(), URLError::timedOut);
}

}  // namespace
}  // namespace quorvelkit
