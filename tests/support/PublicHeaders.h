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
  for (const std::string folder :
       {"QuorvelPlatform/", "QuorvelKit/", "QuorvelKit/JSON/", "QuorvelMap/"}) {
    for (const auto& file : std::filesystem::directory_iterator(sourceFolder + '/' + folder)) {
      const std::string name = file.path().filename();
      if (!name.ends_with(".h") || name.ends_with("_p.h")) continue;
      std::ifstream text(file.path(), std::ios::binary);
      headers[folder + name].assign(std::istreambuf_iterator<char>(text), {});
    }
  }
  return headers;
}

}  // namespace quorvelkit::test
