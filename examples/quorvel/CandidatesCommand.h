// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Backend.h"

#include <CLI/CLI.hpp>

#include <string>

/// `quorvel candidates`: prints the places that a line of text may mean.
class CandidatesCommand {
 public:
  CandidatesCommand(CLI::App& program, Backend& backend);

  bool chosen() const { return command_->parsed(); }
  /// Returns the exit code: 0, or 1 after telling why on standard error.
  int run() const;

 private:
  CLI::App* command_;
  Backend& backend_;
  std::string text_;
  std::string near_;
  std::string extent_;
  std::string key_;
  bool json_ = false;
};
