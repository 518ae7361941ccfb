// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/Scripts.h"

#include <zlib.h>

#include <cstdint>
#include <new>
#include <sstream>

namespace quorvelkit::test {

const std::string helloGzip(
    "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xcb\x48\xcd\xc9\xc9\x57\xc8\x40"
    "\x90\x00\x80\x88\xf9\xe5\x11\x00\x00\x00",
    28);
const std::string helloDeflate("\x78\x9c\xcb\x48\xcd\xc9\xc9\x57\xc8\x40\x90\x00\x3a\x2e\x06\x7d",
                               16);
const std::string helloBrotli("\x0b\x02\x80hello\x03", 9);

std::string gzip(const std::string& text) {
  z_stream stream{};
  constexpr int gzipFormat = MAX_WBITS + 16, memoryLevel = 8;
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipFormat, memoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::bad_alloc();
  std::string bytes(deflateBound(&stream, text.size()), '\0');
  std::string copy = text;
  stream.next_in = reinterpret_cast<Bytef*>(copy.data());
  stream.avail_in = static_cast<uInt>(copy.size());
  stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_out = static_cast<uInt>(bytes.size());
  deflate(&stream, Z_FINISH);
  bytes.resize(stream.total_out);
  deflateEnd(&stream);
  return bytes;
}

std::string chunked(const std::string& body, std::size_t pieceSize) {
  std::ostringstream text;
  for (std::size_t at = 0; at < body.size(); at += pieceSize) {
    const std::string piece = body.substr(at, pieceSize);
    text << std::hex << piece.size() << ";x=1\r\n" << piece << "\r\n";
  }
  return text.str() + "0\r\nTrailer: x\r\n\r\n";
}

std::string header(int status, std::string_view headerLines) {
  return "HTTP/1.1 " + std::to_string(status) + " Status\r\n" + std::string(headerLines);
}

namespace http2 {

namespace {

std::string bigEndian(std::uint32_t number, int bytes) {
  std::string text;
  while (bytes-- > 0)
    text += static_cast<char>(number >> (8 * bytes));
  return text;
}

std::uint32_t fromBigEndian(std::string_view bytes) {
  std::uint32_t number = 0;
  for (const char byte : bytes)
    number = number << 8U | static_cast<unsigned char>(byte);
  return number;
}

// Reads frames until a request is complete.
bool readRequest(Connection& connection) {
  constexpr std::size_t prefaceSize = 24, frameHeadSize = 9;
  if (!connection.take(prefaceSize)) return false;
  for (;;) {
    const auto frameHead = connection.take(frameHeadSize);
    if (!frameHead || !connection.take(fromBigEndian(frameHead->substr(0, 3)))) return false;
    const char type = (*frameHead)[3], flags = (*frameHead)[4];
    if ((type == headers || type == data) && (flags & endStream) != 0) return true;
  }
}

}  // namespace

std::string frame(Type type, int flags, std::string_view payload, int stream) {
  return bigEndian(static_cast<std::uint32_t>(payload.size()), 3) + static_cast<char>(type) +
         static_cast<char>(flags) + bigEndian(static_cast<std::uint32_t>(stream), 4) +
         std::string(payload);
}

// Entries of the static table (RFC 7541, appendix A): 8 is ":status: 200", 28 is "content-length".
std::string ok(int length) {
  std::string block = "\x88";
  if (length >= 0) {
    const std::string digits = std::to_string(length);
    block += "\x0f\x0d" + std::string(1, static_cast<char>(digits.size())) + digits;
  }
  return frame(headers, endHeaders, block);
}

std::string reset(int errorCode) {
  return frame(rstStream, 0, bigEndian(static_cast<std::uint32_t>(errorCode), 4));
}

TestServer::Script answering(std::string frames, bool keepsOpen) {
  return [frames = std::move(frames), keepsOpen](Connection& connection) {
    constexpr int acknowledgement = 1;
    if (!readRequest(connection)) return;
    connection.send(frame(settings, 0, "", 0) + frame(settings, acknowledgement, "", 0) + frames);
    if (keepsOpen) connection.stall();
  };
}

}  // namespace http2
}  // namespace quorvelkit::test
