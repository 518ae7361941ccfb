// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

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

/// Arguments of a program, and how it ends. `text` is a part of what it prints; if the program
/// fails, a part of standard error.
struct ProgramRun {
  std::string arguments;
  int exitCode;
  std::string text;
};

/// Runs a program with the arguments of each row, followed by `commonArguments`.
inline void expectEach(const std::string& program, const std::vector<ProgramRun>& runs,
                       const std::string& commonArguments = "") {
  for (const auto& [arguments, exitCode, text] : runs) {
    const Output output = run(program + arguments + commonArguments);
    EXPECT_EQ(output.exitCode, exitCode) << arguments << '\n' << output.err;
    const std::string printed = exitCode == 0 ? output.out + output.err : output.err;
    EXPECT_THAT(printed, testing::HasSubstr(text)) << arguments;
  }
}

}  // namespace quorvelkit::sandbox
