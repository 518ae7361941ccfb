// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace quorvelkit::sandbox {

/// Returns the content of a file that is a part of the program (see EmbedFiles.cmake), empty if
/// there is none of this name.
std::string_view embeddedFile(std::string_view name);

}  // namespace quorvelkit::sandbox
