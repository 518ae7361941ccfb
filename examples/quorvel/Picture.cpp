// SPDX-License-Identifier: Apache-2.0
#include "Picture.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

namespace {

/// The program beside this one, or its name, which is looked for in PATH.
std::string pictureProgram() {
  std::string name = "quorvel-picture";
  std::array<char, 4096> own;
  const ssize_t size = readlink("/proc/self/exe", own.data(), own.size());
  if (size <= 0) return name;
  const std::string_view path(own.data(), static_cast<std::size_t>(size));
  std::string beside = std::string(path.substr(0, path.rfind('/') + 1)) + name;
  return access(beside.c_str(), X_OK) == 0 ? beside : name;
}

/// Writes a text into a pipe, and closes it. The reader may have ended.
void sendAndClose(int pipe, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(pipe, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) break;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  close(pipe);
}

}  // namespace

std::string checkPicture(const std::string& file) {
  for (const std::string_view suffix : {".png", ".svg", ".PNG", ".SVG"})
    if (file.ends_with(suffix)) return {};
  return '\'' + file + "' is not FILE.png or FILE.svg";
}

std::string drawPicture(const std::string& feature, const std::string& backend,
                        const std::string& file) {
  std::string program = pictureProgram();
  // A name that begins with a dash would be an option.
  std::string style = backend + "/style.json", output = (file.starts_with('-') ? "./" : "") + file,
              option = "--style";
  char* const arguments[] = {program.data(), option.data(), style.data(), output.data(), nullptr};
  int ends[2];
  if (pipe(ends) != 0) return "There is no picture: the system has no pipe.";
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
  posix_spawn_file_actions_addclose(&actions, ends[1]);
  pid_t child = 0;
  const int problem = posix_spawnp(&child, program.c_str(), &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[0]);
  if (problem != 0) {
    close(ends[1]);
    return "There is no picture: the program quorvel-picture is missing. It belongs beside "
           "quorvel or in a folder of PATH, and is built where Qt is installed.";
  }
  auto* const before = signal(SIGPIPE, SIG_IGN);
  sendAndClose(ends[1], feature);
  static_cast<void>(signal(SIGPIPE, before));
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
  return "There is no picture: quorvel-picture has failed.";
}
