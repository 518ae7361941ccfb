// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace quorvelkit::test {

/// The public headers in the source folder: "QuorvelKit/QVRoute.h" and its text.
inline std::map<std::string, std::string> publicHeaders(const std::string& sourceFolder) {
  std::map<std::string, std::string> headers;
  for (const char* folder : {"/QuorvelPlatform", "/QuorvelKit", "/QuorvelMap"}) {
    for (const auto& file : std::filesystem::recursive_directory_iterator(sourceFolder + folder)) {
      const std::string path = file.path().lexically_relative(sourceFolder);
      if (!path.ends_with(".h") || path.ends_with("_p.h")) continue;
      std::ifstream text(file.path(), std::ios::binary);
      headers[path].assign(std::istreambuf_iterator<char>(text), {});
    }
  }
  return headers;
}

}  // namespace quorvelkit::test
