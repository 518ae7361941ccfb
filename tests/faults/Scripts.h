// SPDX-License-Identifier: Apache-2.0
// Scripts of servers that misbehave.
#pragma once

#include "tests/faults/Wire.h"

#include <QuorvelPlatform/URLError.h>

#include <chrono>
#include <string>

namespace quorvelkit::test {

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
