// SPDX-License-Identifier: Apache-2.0
// Scripts for faulty servers, and answers in wire format.
#pragma once

#include "tests/support/TestServer.h"

#include <QuorvelPlatform/URLError.h>

#include <chrono>
#include <string>
#include <string_view>

namespace quorvelkit::test {

/// "hello hello hello", encoded.
extern const std::string helloGzip, helloDeflate, helloBrotli;
/// A gzip stream of a text.
std::string gzip(const std::string& text);

/// A body in chunks of this size, with chunk extensions and a trailer.
std::string chunked(const std::string& body, std::size_t pieceSize);
/// A status line with these header lines, without the empty line.
std::string header(int status, std::string_view headerLines = {});

/// HTTP/2 frames (RFC 9113) for the one stream of a test.
namespace http2 {

enum Type : unsigned char {
  data,
  headers,
  priority,
  rstStream,
  settings,
  goAway = 7,
  continuation = 9
};
constexpr int endStream = 1, endHeaders = 4;

std::string frame(Type type, int flags, std::string_view payload, int stream = 1);
/// A header block with status 200 and, if not negative, this content length.
std::string ok(int length = -1);
std::string reset(int errorCode);
/// Reads a request, sends settings and these frames, and then waits until the client closes or
/// closes at once.
TestServer::Script answering(std::string frames, bool keepsOpen = true);

}  // namespace http2

using E = URLError;
using namespace std::chrono_literals;

// A time-out for faults that end with it. Tests wait for it.
constexpr auto shortTimeout = 30ms;

inline const std::string ok = header(200), okGzip = header(200, "Content-Encoding: gzip\r\n"),
                         okChunked = header(200, "Transfer-Encoding: chunked\r\n"),
                         goodAnswer = withLength(ok, "{}"),
                         shortBody = header(200, "Content-Length: 9\r\n\r\nbod");

// Reads a request, sends some bytes, and then closes, resets or waits until the client closes.
enum class Ending { close, reset, stall };

inline TestServer::Script sendThen(std::string bytes, Ending ending, bool readFirst = true) {
  return [=, bytes = std::move(bytes)](Connection& connection) {
    if (readFirst && !connection.read()) return;
    connection.send(bytes);
    if (ending == Ending::reset) connection.reset();
    if (ending == Ending::stall) connection.stall();
  };
}

// Reads a request, sends these bytes and closes.
inline TestServer::Script sendAndClose(const std::string& bytes) {
  return sendThen(bytes, Ending::close);
}

// Sends the start once and then the bytes repeatedly until the client closes.
inline TestServer::Script endless(const std::string& start, const std::string& bytes) {
  return [=](Connection& connection) {
    connection.read();
    connection.send(start);
    while (connection.send(bytes)) {
    }
  };
}

inline TestServer::Script goodServer() {
  return TestServer::answering([](const auto&, auto& connection) { connection.send(goodAnswer); });
}

// Answers all requests with goodAnswer, except that the script handles the second request of the
// first connection.
inline TestServer::Script onSecondRequest(TestServer::Script script) {
  return [script = std::move(script)](Connection& connection) {
    if (connection.number > 1) return goodServer()(connection);
    connection.read();
    connection.send(goodAnswer);
    script(connection);
  };
}

}  // namespace quorvelkit::test
