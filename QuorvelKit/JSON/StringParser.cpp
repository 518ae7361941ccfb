// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/StringParser_p.h>
#include <QuorvelKit/JSON/UTF8Writer_p.h>
#include <QuorvelKit/JSON/UnescapedText_p.h>
#include <QuorvelPlatform/UTF8.h>

#include <string_view>

namespace quorvelkit::detail {

namespace {

// Returns the value of four hexadecimal digits, or -1 if there are fewer than four.
std::int32_t parseHexDigits(const char* p, const char* end) noexcept {
  if (end - p < 4) return -1;
  std::int32_t value = 0;
  for (int i = 0; i < 4; ++i) {
    const char c = p[i];
    const char lower = static_cast<char>(c | 0x20);
    std::int32_t digit = -1;
    if (c >= '0' && c <= '9') digit = c - '0';
    if (lower >= 'a' && lower <= 'f') digit = lower - 'a' + 10;
    if (digit < 0) return -1;
    value = value * 16 + digit;
  }
  return value;
}

// Parses "uXXXX", or a surrogate pair of two such escape sequences. Returns an error message, or
// null on success.
const char* parseUnicodeEscape(const char*& p, const char* end, GrowingArray<char>& text) {
  const std::int32_t first = parseHexDigits(p + 1, end);
  if (first < 0) return "Invalid escape sequence";
  p += 5;
  auto character = static_cast<char32_t>(first);
  if (first >= 0xD800 && first < 0xE000) {
    const bool hasSecond = first < 0xDC00 && end - p >= 6 && p[0] == '\\' && p[1] == 'u';
    const std::int32_t second = hasSecond ? parseHexDigits(p + 2, end) : -1;
    if (second < 0xDC00 || second >= 0xE000) return "Lone surrogate";
    p += 6;
    character = static_cast<char32_t>(0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00));
  }
  char bytes[4] = {};
  text.append(bytes, encodeUTF8(character, bytes));
  return nullptr;
}

// Parses the part of an escape sequence after its backslash. Returns an error message, or null on
// success.
const char* parseEscape(const char*& p, const char* end, GrowingArray<char>& text) {
  if (p == end) return "Unexpected end";
  if (*p == 'u') return parseUnicodeEscape(p, end, text);
  constexpr std::string_view letters = "\"\\/bfnrt";
  constexpr std::string_view characters = "\"\\/\b\f\n\r\t";
  const std::size_t letter = letters.find(*p);
  if (letter == std::string_view::npos) return "Invalid escape sequence";
  text.push(characters[letter]);
  ++p;
  return nullptr;
}

}  // namespace

StringResult parseString(const char* p, const char* end, GrowingArray<char>& text) {
  bool escaped = false;
  for (;;) {
    std::uint64_t nonASCII = 0;
    const char* const stop = endOfUnescaped(p, end, nonASCII);
    const std::string_view unescaped(p, stop);
    if (nonASCII != 0 && !isUTF8(unescaped)) return {p, "Invalid UTF-8 in a string", escaped};
    text.append(unescaped.data(), unescaped.size());
    p = stop;
    if (p == end) return {p, "Unexpected end", escaped};
    const char c = *p;
    if (c != '"' && c != '\\') return {p, "Control character in a string", escaped};
    ++p;
    if (c == '"') return {p, nullptr, escaped};
    escaped = true;
    const char* const problem = parseEscape(p, end, text);
    if (problem) return {p, problem, escaped};
  }
}

}  // namespace quorvelkit::detail
