// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace quorvelkit::sandbox {

/// What a command wrote, and how it ended.
struct Output {
  int exitCode = -1;
  std::string out;
  std::string err;
};

/// Runs a command in the shell until it ends.
inline Output run(const std::string& command) {
  Output output;
  const std::string errFile = testing::TempDir() + "/err-" + std::to_string(getpid());
  FILE* pipe = popen((command + " 2>" + errFile).c_str(), "r");
  std::array<char, 4096> chunk;
  while (const std::size_t size = fread(chunk.data(), 1, chunk.size(), pipe))
    output.out.append(chunk.data(), size);
  const int status = pclose(pipe);
  output.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  std::ifstream file(errFile);
  output.err.assign(std::istreambuf_iterator<char>(file), {});
  unlink(errFile.c_str());
  return output;
}

}  // namespace quorvelkit::sandbox
