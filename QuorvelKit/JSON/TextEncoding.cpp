// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/TextEncoding.h>
#include <QuorvelKit/JSON/UTF8Writer_p.h>
#include <QuorvelPlatform/UTF8.h>

#include <algorithm>

namespace quorvelkit {

namespace {

void append(std::string& text, char32_t character) {
  char bytes[4];
  text.append(bytes, detail::encodeUTF8(character, bytes));
}

// Converts the bytes of one code unit.
char32_t codeUnit(std::string_view bytes, bool bigEndian) noexcept {
  char32_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char byte = bytes[bigEndian ? i : bytes.size() - 1 - i];
    value = (value << 8U) | static_cast<unsigned char>(byte);
  }
  return value;
}

std::optional<std::string> decodeUTF16(std::string_view bytes, bool bigEndian) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    char32_t character = codeUnit(bytes.substr(i, 2), bigEndian);
    if (character >= 0xD800 && character < 0xE000) {
      i += 2;
      if (character >= 0xDC00 || i == bytes.size()) return std::nullopt;
      const char32_t second = codeUnit(bytes.substr(i, 2), bigEndian);
      if (second < 0xDC00 || second >= 0xE000) return std::nullopt;
      character = 0x10000 + ((character - 0xD800) << 10U) + (second - 0xDC00);
    }
    append(text, character);
  }
  return text;
}

std::optional<std::string> decodeUTF32(std::string_view bytes, bool bigEndian) {
  if (bytes.size() % 4 != 0) return std::nullopt;
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 4) {
    const char32_t character = codeUnit(bytes.substr(i, 4), bigEndian);
    if (character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) return std::nullopt;
    append(text, character);
  }
  return text;
}

// Removes a byte-order mark and returns true if the byte order is big-endian.
bool removeByteOrderMark(std::string_view& bytes, std::string_view bigMark,
                         std::string_view littleMark) {
  const bool big = bytes.starts_with(bigMark);
  const bool little = bytes.starts_with(littleMark);
  if (big || little) bytes.remove_prefix(bigMark.size());
  return !little;
}

}  // namespace

std::optional<std::string> decodedText(std::string_view bytes, TextEncoding encoding) {
  using namespace std::string_view_literals;
  switch (encoding) {
    case TextEncoding::utf8:
      return isUTF8(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
    case TextEncoding::ascii:
      if (std::any_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; })) {
        return std::nullopt;
      }
      return std::string(bytes);
    case TextEncoding::isoLatin1: {
      std::string text;
      for (const char c : bytes)
        append(text, static_cast<unsigned char>(c));
      return text;
    }
    case TextEncoding::utf16: {
      const bool bigEndian = removeByteOrderMark(bytes, "\xFE\xFF"sv, "\xFF\xFE"sv);
      return decodeUTF16(bytes, bigEndian);
    }
    case TextEncoding::utf16BigEndian: return decodeUTF16(bytes, true);
    case TextEncoding::utf16LittleEndian: return decodeUTF16(bytes, false);
    case TextEncoding::utf32: {
      const bool bigEndian = removeByteOrderMark(bytes, "\0\0\xFE\xFF"sv, "\xFF\xFE\0\0"sv);
      return decodeUTF32(bytes, bigEndian);
    }
    case TextEncoding::utf32BigEndian: return decodeUTF32(bytes, true);
    case TextEncoding::utf32LittleEndian: return decodeUTF32(bytes, false);
  }
  return std::nullopt;
}

}  // namespace quorvelkit
