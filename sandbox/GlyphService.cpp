// SPDX-License-Identifier: Apache-2.0
#include "sandbox/GlyphService.h"

#include "sandbox/EmbeddedFiles.h"

#include <charconv>
#include <cstdint>
#include <string>

namespace quorvelkit::sandbox {
namespace {

constexpr std::uint32_t rangeSize = 256;
constexpr std::uint32_t lastCharacter = 0x10FFFF;

/// Returns the number at the beginning of a glyph file, least significant byte first.
std::uint32_t takeNumber(std::string_view& file) {
  std::uint32_t number = 0;
  for (unsigned i = 0; i < 4; ++i)
    number |= static_cast<std::uint32_t>(static_cast<unsigned char>(file[i])) << 8 * i;
  file.remove_prefix(4);
  return number;
}

/// Returns the document of a range of characters, empty if the file has none. A glyph file is a
/// sequence of documents, each after its first character and its size.
std::string_view documentOf(std::string_view file, std::uint32_t first) {
  while (!file.empty()) {
    const std::uint32_t number = takeNumber(file);
    const std::uint32_t size = takeNumber(file);
    if (number == first) return file.substr(0, size);
    file.remove_prefix(size);
  }
  return {};
}

/// Reads a text such as "256-511". Returns the first number.
std::optional<std::uint32_t> firstOfRange(std::string_view text) {
  std::uint32_t first = 0, last = 0;
  const char* const end = text.data() + text.size();
  const auto [dash, error] = std::from_chars(text.data(), end, first);
  if (error != std::errc() || dash == end || *dash != '-') return std::nullopt;
  const auto [rest, lastError] = std::from_chars(dash + 1, end, last);
  if (lastError != std::errc() || rest != end || first % rangeSize != 0 || first > lastCharacter ||
      last != first + rangeSize - 1) {
    return std::nullopt;
  }
  return first;
}

/// The document of a font that has no characters in a range: field 1 contains the name of the font
/// and the range.
std::string emptyDocument(std::string_view font, std::string_view range) {
  const auto field = [](char tag, std::string_view text) {
    return std::string{tag, static_cast<char>(text.size())}.append(text);
  };
  return field(0x0A, field(0x0A, font) + field(0x12, range));
}

HTTPAnswer glyphs(std::string_view font, std::string_view range) {
  const auto first = firstOfRange(range);
  if (!first || (font != regularFont && font != boldFont)) {
    return HTTPAnswer::failure(404, 404, "This font or this range of characters does not exist.");
  }
  const std::string_view document = documentOf(
      embeddedFile(font == boldFont ? "DejaVuSans-Bold.glyphs" : "DejaVuSans.glyphs"), *first);
  return {200, "application/x-protobuf",
          document.empty() ? emptyDocument(font, range) : std::string(document)};
}

}  // namespace

std::optional<HTTPAnswer> glyphsOrSprite(std::string_view path) {
  constexpr std::string_view glyphFolder = "/glyphs/", glyphSuffix = ".pbf";
  if (path.starts_with(glyphFolder) && path.ends_with(glyphSuffix)) {
    path.remove_prefix(glyphFolder.size());
    path.remove_suffix(glyphSuffix.size());
    const std::size_t slash = std::min(path.rfind('/'), path.size());
    return glyphs(path.substr(0, slash), path.substr(std::min(slash + 1, path.size())));
  }
  for (const std::string_view name :
       {"sprite.json", "sprite@2x.json", "sprite.png", "sprite@2x.png"}) {
    if (path.substr(0, 1) != "/" || path.substr(1) != name) continue;
    const bool isImage = name.ends_with(".png");
    return HTTPAnswer{200, isImage ? "image/png" : "application/json",
                      std::string(embeddedFile(name))};
  }
  return std::nullopt;
}

}  // namespace quorvelkit::sandbox
