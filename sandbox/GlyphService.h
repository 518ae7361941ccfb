// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"

#include <optional>
#include <string_view>

namespace quorvelkit::sandbox {

/// The fonts of the map style, as it names them.
constexpr std::string_view regularFont = "DejaVu Sans Book";
constexpr std::string_view boldFont = "DejaVu Sans Bold";

/// Serves the icons of the map style at /sprite.json and /sprite.png (also with "@2x"), and its
/// glyphs at /glyphs/FONT/FIRST-LAST.pbf: the distances to the outlines of 256 characters, in the
/// format of Mapbox styles. A range with no characters in the font is a document without glyphs.
/// Returns nothing if the path belongs to another service. Thread-safe.
std::optional<HTTPAnswer> glyphsOrSprite(std::string_view path);

}  // namespace quorvelkit::sandbox
