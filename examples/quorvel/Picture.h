// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Checks the name of a picture: FILE.png or FILE.svg. Returns an error, as CLI11 expects it.
std::string checkPicture(const std::string& file);

/// Draws a route, a GeoJSON feature, over the style of a backend. Starts the program
/// quorvel-picture, which is beside this program or in PATH. Returns an error, or an empty text.
std::string drawPicture(const std::string& feature, const std::string& backend,
                        const std::string& file);
