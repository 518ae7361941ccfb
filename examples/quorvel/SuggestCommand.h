// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Backend.h"

#include <CLI/CLI.hpp>

#include <string>

/// `quorvel suggest`: prints how a text that is being typed may go on.
class SuggestCommand {
 public:
  SuggestCommand(CLI::App& program, Backend& backend);

  bool chosen() const { return command_->parsed(); }
  /// Returns the exit code: 0, or 1 after telling why on standard error.
  int run() const;

 private:
  CLI::App* command_;
  Backend& backend_;
  std::string text_;
  std::string near_;
  bool json_ = false;
};
