// SPDX-License-Identifier: Apache-2.0
// Scripts of servers that misbehave, and answers as they stand on the wire, whole ones and others.
#pragma once

#include "tests/support/TestServer.h"

#include <QuorvelPlatform/URLError.h>

#include <chrono>
#include <string>
#include <string_view>

namespace quorvelkit::test {

/// "hello hello hello" as gzip, as deflate and as brotli make it.
extern const std::string helloGzip, helloDeflate, helloBrotli;
/// A gzip stream of so many times "x", without the checksums at its end.
std::string gzipBomb(std::size_t size);
/// A whole gzip stream of a text, stored as it is.
std::string storedGzip(const std::string& text);

/// A body in chunks of that size.
std::string chunked(const std::string& body, std::size_t pieceSize);
/// A status line with header lines.
std::string head(int status, std::string_view headerLines = {});

/// HTTP/2 (RFC 9113): frames for the one stream that a test asks on.
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
/// A header block for the status 200, with that length unless it is below zero.
std::string ok(int length = -1);
std::string reset(int errorCode);
/// Takes a request and then sends the frames behind the settings; ends when the client does, or
/// closes at once.
TestServer::Script answering(std::string frames, bool stays = true);

}  // namespace http2

using E = URLError;
using namespace std::chrono_literals;

// Too short for much to happen in it, short enough for a test to wait for.
constexpr auto impatient = 30ms;

inline const std::string ok = head(200), okGzip = head(200, "Content-Encoding: gzip\r\n"),
                         okChunked = head(200, "Transfer-Encoding: chunked\r\n"),
                         good = withLength(ok, "{}"),
                         shortBody = head(200, "Content-Length: 9\r\n\r\nbod");

// Reads a request, sends some bytes, and then closes, resets or stands still.
enum class End { close, reset, stall };

inline TestServer::Script breaking(std::string bytes, End end, bool readFirst = true) {
  return [=, bytes = std::move(bytes)](Connection& connection) {
    if (readFirst && !connection.read()) return;
    connection.send(bytes);
    if (end == End::reset) connection.reset();
    if (end == End::stall) connection.stall();
  };
}

// Sends these bytes and closes.
inline TestServer::Script once(const std::string& bytes) { return breaking(bytes, End::close); }

// Sends the same over and over again, for as long as it is taken.
inline TestServer::Script endless(const std::string& start, const std::string& bytes) {
  return [=](Connection& connection) {
    connection.read();
    connection.send(start);
    while (connection.send(bytes)) {
    }
  };
}

inline TestServer::Script whole() {
  return TestServer::answering([](const auto&, auto& connection) { connection.send(good); });
}

// Answers well, except that the second request of the first connection meets with something else.
inline TestServer::Script secondMeets(TestServer::Script script) {
  return [script = std::move(script)](Connection& connection) {
    if (connection.number > 1) return whole()(connection);
    connection.read();
    connection.send(good);
    script(connection);
  };
}

}  // namespace quorvelkit::test
