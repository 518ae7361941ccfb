// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// One request of the input of a batch.
struct BatchRecord {
  /// The number of the line where it begins, from 1.
  std::uint64_t line = 0;
  /// The values by column or member.
  std::map<std::string, std::string, std::less<>> fields;
  /// What is wrong with the record. Empty if it can be read.
  std::string fault;

  /// Returns a value, or an empty text.
  std::string field(std::string_view name) const {
    const auto found = fields.find(name);
    return found == fields.end() ? std::string() : found->second;
  }
};

enum class InputFormat { detect, csv, ndjson };

/// Reads requests from bytes that arrive in pieces: CSV with a header (RFC 4180), or one JSON
/// object in each line. The first character that is no white space decides, unless the format is
/// given. Empty lines are skipped. Memory: the bytes that were not returned yet.
class BatchInput {
 public:
  /// A record that is longer stops the program: a quotation mark without an end would otherwise
  /// read the rest of the input into memory.
  static constexpr std::size_t maxRecordSize = std::size_t{1} << 20U;

  /// `required` are the columns that the header of a CSV must name.
  BatchInput(InputFormat format, std::vector<std::string> required)
      : format_(format), required_(std::move(required)) {}

  void append(std::string_view bytes);
  /// Tells that no bytes follow.
  void end() { hasEnded_ = true; }
  bool hasEnded() const { return hasEnded_; }
  /// Returns the number of bytes that were not returned yet.
  std::size_t unreadSize() const { return buffer_.size() - begin_; }

  /// Returns the next request. Absent if more bytes are needed, or at the end. Throws
  /// std::runtime_error if the rest cannot be read: without a header, or with a record that is too
  /// long.
  std::optional<BatchRecord> next();

 private:
  enum class Scan { fieldStart, plain, quoted, afterQuote };

  /// Returns the next record without its line break. Quoted values of CSV include line breaks.
  std::optional<std::string_view> takeRecord();
  Scan after(char c) const;
  void readHeader(std::string_view text);
  bool detectFormat();
  BatchRecord readCSV(std::string_view text) const;
  BatchRecord readJSON(std::string_view text) const;

  InputFormat format_;
  std::vector<std::string> required_;
  std::vector<std::string> header_;
  std::string buffer_;
  std::size_t begin_ = 0;         // Of the bytes that were not returned.
  std::size_t scanned_ = 0;       // The position up to which no end of the record was found.
  Scan scan_ = Scan::fieldStart;  // At that position, for CSV.
  std::uint64_t lineCount_ = 0;
  std::uint64_t recordLine_ = 0;
  bool hasEnded_ = false;
};
