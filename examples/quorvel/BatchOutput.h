// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

enum class OutputFormat { ndjson, csv, geoJSONSequence };

/// Writes the answers of a batch to standard output or to a file, which is also the journal of the
/// batch: each answer is one line that begins with the number of its line in the input. Answers
/// that wait for an earlier one are kept in a second file, FILE.ahead, until the end of the batch.
class BatchOutput {
 public:
  BatchOutput() = default;
  BatchOutput(const BatchOutput&) = delete;
  BatchOutput& operator=(const BatchOutput&) = delete;
  ~BatchOutput();

  /// Opens a file. Without `resumes`, it must be empty or absent. With it, reads which lines have
  /// an answer and cuts an incomplete line off its end. `header` is the first line of a CSV.
  /// Throws std::runtime_error.
  void open(const std::string& path, OutputFormat format, const std::string& header, bool resumes);

  /// Returns true if the file had an answer to this line of the input when it was opened.
  bool hasAnswer(std::uint64_t line) const {
    return line < answered_.size() && answered_[static_cast<std::size_t>(line)];
  }
  /// Removes and returns the answer to this line that the second file had when it was opened.
  std::optional<std::string> takeAhead(std::uint64_t line);
  /// Returns the number of answers in both files when they were opened.
  std::uint64_t earlierAnswerCount() const { return earlierAnswerCount_; }
  bool isTerminal() const { return isTerminal_; }
  /// Returns true if there is a header or an answer already.
  bool hasContent() const { return hasContent_; }

  /// Adds a whole line, which is made printable() for a terminal. flush() writes it and throws
  /// std::system_error.
  void add(std::string_view line);
  void flush();
  /// The same for the second file. clearAhead() empties it, before the lines that are added later.
  void addAhead(std::string_view line);
  void clearAhead();
  std::size_t aheadSize() const { return (clearsAhead_ ? 0 : aheadSize_) + aheadBuffer_.size(); }
  /// Removes the second file, after the whole input was answered.
  void removeAhead();

  /// The text before the number of the input line, in each answer.
  static std::string_view prefix(OutputFormat format);

 private:
  void readJournal();
  void readAhead();
  void checkBegunLine(int descriptor, const std::string& path, off_t begin,
                      std::string_view header) const;
  void noteLine(std::string_view line);
  std::uint64_t numberOf(std::string_view line, const std::string& path) const;
  std::string aheadPath() const { return path_ + ".ahead"; }

  std::string path_, header_;
  OutputFormat format_ = OutputFormat::ndjson;
  int descriptor_ = STDOUT_FILENO;
  bool isTerminal_ = isatty(STDOUT_FILENO) != 0;
  std::string buffer_;
  std::vector<bool> answered_;
  std::uint64_t earlierAnswerCount_ = 0;
  bool hasContent_ = false;

  int aheadDescriptor_ = -1;  // -1 if there is no file.
  std::string aheadBuffer_;
  std::size_t aheadSize_ = 0;  // In the file.
  bool clearsAhead_ = false;
  std::map<std::uint64_t, std::string> ahead_;
};
