// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "BatchKind.h"
#include "BatchOutput.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Why a line of a batch has no answer.
struct BatchError {
  std::string message;
  /// The status of the server; absent without an answer.
  std::optional<std::int64_t> status;
};

/// Returns the error of a result, or nullopt if it is an answer.
std::optional<BatchError> batchErrorOf(const BatchKind& kind,
                                       const std::shared_ptr<quorvelkit::QVBaseResponse>& response,
                                       const std::optional<quorvelkit::QVNotSent>& notSent);

/// Writes the answers of a batch, each as one line.
class BatchFormatter {
 public:
  /// `columns` are the chosen columns for CSV and GeoJSON.
  BatchFormatter(const BatchKind& kind, OutputFormat format, std::vector<BatchColumn> columns)
      : kind_(kind), format_(format), columns_(std::move(columns)) {}

  /// Returns the header of a CSV without its line break, else an empty text.
  std::string header() const;
  std::string answerLine(std::uint64_t line, const quorvelkit::QVBaseResponse& response) const;
  std::string errorLine(std::uint64_t line, const BatchError& error) const;

 private:
  std::string start(std::uint64_t line) const;

  const BatchKind& kind_;
  OutputFormat format_;
  std::vector<BatchColumn> columns_;
};
