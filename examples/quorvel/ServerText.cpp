// SPDX-License-Identifier: Apache-2.0
#include "ServerText.h"

#include <QuorvelPlatform/UTF8.h>

#include <unistd.h>

#include <cstddef>
#include <iostream>
#include <sstream>

using namespace quorvelkit;

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

bool isDirectionControl(char32_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

bool isLineBreakOrTab(char32_t c) {
  return (c >= '\t' && c <= '\r') || c == 0x85 || c == 0x2028 || c == 0x2029;
}

/// Removes the first character of a text that is UTF-8, and returns its bytes and its number.
std::pair<std::string_view, char32_t> takeCharacter(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i)
    character = character << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
  const std::string_view bytes = text.substr(0, length);
  text.remove_prefix(length);
  return {bytes, character};
}

}  // namespace

std::string printable(std::string_view text) {
  const bool isText = isUTF8(text);
  std::string result;
  while (!text.empty()) {
    if (!isText && static_cast<unsigned char>(text.front()) >= 0x80) {
      result += replacementCharacter;
      text.remove_prefix(1);
      continue;
    }
    const auto [bytes, character] = takeCharacter(text);
    if (isLineBreakOrTab(character)) {
      result += ' ';
    } else if (character < 0x20 || (character >= 0x7F && character < 0xA0)) {
      result += replacementCharacter;
    } else if (!isDirectionControl(character)) {
      result += bytes;
    }
  }
  return result;
}

void printBody(std::string_view body) {
  if (isatty(STDOUT_FILENO) == 0) {
    std::cout << body << '\n';
    return;
  }
  for (std::size_t begin = 0; begin < body.size();) {
    const std::size_t end = std::min(body.find('\n', begin), body.size());
    std::cout << printable(body.substr(begin, end - begin)) << '\n';
    begin = end + 1;
  }
}

std::string urlText(const URL& url) {
  std::ostringstream text;
  text << url;
  return text.str();
}
