// SPDX-License-Identifier: Apache-2.0
// Renders a font for map engines:
//   make_glyphs FONT.ttf OUTPUT
// The output is a sequence of glyph documents of 256 characters each (see sandbox/GlyphFile.h).
#include <freetype/freetype.h>
#include <freetype/ftmodapi.h>
#include <ft2build.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

namespace {

// The format of the engines: 24 pixels high, with a margin of 3 pixels in which the distance to the
// outline still counts. Distances reach from -2 to 6 pixels, in 256 steps.
constexpr FT_UInt fontSize = 24;
constexpr int margin = 3;
constexpr double steps = 256;
constexpr double range = 8;
constexpr double outsideFraction = 0.25;
// Engines put the center of a line 17 pixels below its top. This ascent puts the center of capital
// letters there.
constexpr int ascent = 26;
// FreeType's distances: 128 is the outline, 0 is `reach` pixels outside, which is also its margin.
// A larger reach takes much more time and changes only the corners.
constexpr int freeTypeOutline = 128;
constexpr int reach = 4;

// Latin, Greek, Cyrillic, Armenian and Hebrew, more Latin, and symbols.
constexpr std::array<FT_ULong, 9> firstCharacters = {0,     0x100,  0x200,  0x300, 0x400,
                                                     0x500, 0x1E00, 0x2000, 0x2100};

void addVarint(std::string& to, std::uint64_t value) {
  for (; value >= 0x80; value >>= 7U)
    to.push_back(static_cast<char>((value & 0x7FU) | 0x80U));
  to.push_back(static_cast<char>(value));
}

void addNumber(std::string& to, unsigned field, std::uint64_t value) {
  addVarint(to, field << 3U);
  addVarint(to, value);
}

void addSigned(std::string& to, unsigned field, int value) {
  addNumber(to, field,
            value < 0 ? static_cast<std::uint64_t>(-2 * value - 1)
                      : static_cast<std::uint64_t>(2 * value));
}

void addBytes(std::string& to, unsigned field, const std::string& bytes) {
  addVarint(to, field << 3U | 2U);
  addVarint(to, bytes.size());
  to += bytes;
}

// Returns the distances as the engines expect them.
std::string distances(const FT_Bitmap& bitmap, int width, int height) {
  std::string result;
  constexpr int skipped = reach - margin;
  for (int y = 0; y < height + 2 * margin; ++y) {
    for (int x = 0; x < width + 2 * margin; ++x) {
      const int given = bitmap.buffer[(y + skipped) * bitmap.pitch + x + skipped];
      const double inside = static_cast<double>(given - freeTypeOutline) / freeTypeOutline * reach;
      const double value = steps * (1 - outsideFraction + inside / range);
      result.push_back(
          static_cast<char>(static_cast<unsigned char>(std::clamp(value, 0.0, steps - 1))));
    }
  }
  return result;
}

std::string glyph(FT_Face face, FT_ULong character) {
  const FT_UInt index = FT_Get_Char_Index(face, character);
  if (index == 0 || FT_Load_Glyph(face, index, FT_LOAD_NO_HINTING) != 0) return {};
  const FT_GlyphSlot slot = face->glyph;
  std::string message;
  addNumber(message, 1, character);
  const auto advance = static_cast<std::uint64_t>((slot->advance.x + 32) / 64);
  int width = 0, height = 0, left = 0, top = 0;
  // A space has no outline.
  if (slot->outline.n_points > 0) {
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_SDF) != 0) return {};
    width = static_cast<int>(slot->bitmap.width) - 2 * reach;
    height = static_cast<int>(slot->bitmap.rows) - 2 * reach;
    left = slot->bitmap_left + reach;
    top = slot->bitmap_top - reach - ascent;
    addBytes(message, 2, distances(slot->bitmap, width, height));
  }
  addNumber(message, 3, static_cast<std::uint64_t>(width));
  addNumber(message, 4, static_cast<std::uint64_t>(height));
  addSigned(message, 5, left);
  addSigned(message, 6, top);
  addNumber(message, 7, advance);
  return message;
}

std::string document(FT_Face face, const std::string& name, FT_ULong first) {
  std::string stack;
  addBytes(stack, 1, name);
  addBytes(stack, 2, std::to_string(first) + '-' + std::to_string(first + 255));
  for (FT_ULong character = first; character < first + 256; ++character) {
    const std::string message = glyph(face, character);
    if (!message.empty()) addBytes(stack, 3, message);
  }
  std::string result;
  addBytes(result, 1, stack);
  return result;
}

void writeNumber(std::ostream& to, std::size_t number) {
  for (unsigned shift = 0; shift < 32; shift += 8)
    to.put(static_cast<char>(number >> shift & 0xFFU));
}

}  // namespace

int main(int argc, char** argv) {
  FT_Library library = nullptr;
  FT_Face face = nullptr;
  if (argc != 3 || FT_Init_FreeType(&library) != 0 ||
      FT_New_Face(library, argv[1], 0, &face) != 0 || FT_Set_Pixel_Sizes(face, 0, fontSize) != 0) {
    std::cerr << "usage: make_glyphs FONT.ttf OUTPUT\n";
    return EXIT_FAILURE;
  }
  const FT_Int spread = reach;
  FT_Property_Set(library, "sdf", "spread", &spread);
  std::ofstream output(argv[2], std::ios::binary);
  const std::string name = std::string(face->family_name) + ' ' + face->style_name;
  for (const FT_ULong first : firstCharacters) {
    const std::string pbf = document(face, name, first);
    writeNumber(output, first);
    writeNumber(output, pbf.size());
    output << pbf;
  }
  FT_Done_Face(face);
  FT_Done_FreeType(library);
  return output.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
