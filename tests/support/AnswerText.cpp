// SPDX-License-Identifier: Apache-2.0
#include "tests/support/AnswerText.h"

#include <cstdio>

namespace quorvelkit::test {

std::string withLength(const std::string& head, const std::string& body) {
  return head + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string chunked(const std::string& body, std::size_t pieceSize) {
  std::string text;
  for (std::size_t at = 0; at < body.size(); at += pieceSize) {
    const std::string piece = body.substr(at, pieceSize);
    char size[32];
    std::snprintf(size, sizeof size, "%zx;x=1\r\n", piece.size());
    text += size + piece + "\r\n";
  }
  return text + "0\r\nTrailer: x\r\n\r\n";
}

}  // namespace quorvelkit::test
