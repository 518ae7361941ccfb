// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Backend.h"
#include "BatchJob.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// The sub-command `quorvel batch`, which runs one request for each line of a file.
class BatchCommand {
 public:
  BatchCommand(CLI::App& program, Backend& backend);

  bool isChosen() const { return command_->parsed(); }
  /// Returns the exit code: 0, 1 after an error message, 2 for arguments that do not fit together,
  /// 3 if some lines have an error, 128 and the number of the signal that ended it.
  int run() const;

 private:
  void addOptions();
  /// Returns the chosen columns, or what is wrong with them.
  std::variant<std::vector<BatchColumn>, std::string> columns(const BatchKind& kind,
                                                              OutputFormat format) const;
  int report(const BatchJob::Summary& summary) const;

  CLI::App* command_;
  Backend& backend_;
  std::string kind_;
  std::string file_;
  std::string inputFormat_;
  std::string format_ = "ndjson";
  std::vector<std::string> columns_;
  std::string output_;
  bool resumes_ = false;
  bool isUnordered_ = false;
  BatchJob::Settings settings_;
};
