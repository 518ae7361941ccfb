// SPDX-License-Identifier: Apache-2.0
// Answers as they stand on the wire, whole ones and others.
#pragma once

#include "tests/support/TestServer.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvelkit::test {

/// "hello hello hello" as gzip, as deflate and as brotli make it.
extern const std::string helloGzip, helloDeflate, helloBrotli;
/// A gzip stream of so many times "x", without the checksums at its end.
std::string gzipBomb(std::size_t size);

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
}  // namespace quorvelkit::test
