// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Backend.h"

#include <CLI/CLI.hpp>

#include <string>

/// The sub-commands that call the find server: `quorvel candidates`, `suggest` and `reverse`.
class FindCommand {
 public:
  FindCommand(CLI::App& program, Backend& backend);

  /// Runs the sub-command that was parsed. Returns the exit code: 0, or 1 after an error message.
  int run() const;

 private:
  int findCandidates() const;
  int suggest() const;
  int reverseGeocode() const;

  CLI::App* candidates_;
  CLI::App* suggest_;
  CLI::App* reverse_;
  Backend& backend_;
  std::string text_;
  std::string near_;
  std::string extent_;
  std::string key_;
  std::string position_;
  bool json_ = false;
};
