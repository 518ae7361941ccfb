// SPDX-License-Identifier: Apache-2.0
#include "BatchInput.h"

#include <QuorvelKit/JSON/JSON.h>

#include <algorithm>
#include <set>
#include <stdexcept>

using namespace quorvelkit;

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Splits a record of CSV. Returns what is wrong with its quotation marks, else an empty text.
std::string splitCSV(std::string_view text, std::vector<std::string>& fields) {
  while (true) {
    std::string field;
    if (text.starts_with('"')) {
      text.remove_prefix(1);
      while (true) {
        const std::size_t quote = text.find('"');
        if (quote == std::string_view::npos) return "a quotation mark has no end";
        field += text.substr(0, quote);
        text.remove_prefix(quote + 1);
        if (!text.starts_with('"')) break;
        field += '"';
        text.remove_prefix(1);
      }
      if (!text.empty() && text.front() != ',') return "characters follow a quotation mark";
    } else {
      field = text.substr(0, text.find(','));
      if (field.find('"') != std::string::npos) return "a quotation mark is inside a value";
      text.remove_prefix(field.size());
    }
    fields.push_back(std::move(field));
    if (text.empty()) return {};
    text.remove_prefix(1);
  }
}

bool isBlankRecord(std::string_view record) {
  return record.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

}  // namespace

void BatchInput::append(std::string_view bytes) {
  buffer_.erase(0, begin_);
  scanned_ -= begin_;
  begin_ = 0;
  buffer_ += bytes;
}

bool BatchInput::detectFormat() {
  if (lineCount_ == 0 && begin_ == 0) {
    if (buffer_.size() < byteOrderMark.size() && !hasEnded_) return false;
    if (buffer_.starts_with(byteOrderMark)) begin_ = scanned_ = byteOrderMark.size();
  }
  if (format_ != InputFormat::detect) return true;
  const std::size_t first = buffer_.find_first_not_of(" \t\r\n", begin_);
  if (first == std::string::npos) return false;
  format_ = buffer_[first] == '{' ? InputFormat::ndjson : InputFormat::csv;
  return true;
}

BatchInput::Scan BatchInput::after(char c) const {
  switch (scan_) {
    case Scan::quoted: return c == '"' ? Scan::afterQuote : Scan::quoted;
    case Scan::fieldStart:
    case Scan::afterQuote:
      if (c == '"') return Scan::quoted;
      [[fallthrough]];
    case Scan::plain: break;
  }
  return c == ',' ? Scan::fieldStart : Scan::plain;
}

std::optional<std::string_view> BatchInput::takeRecord() {
  if (scanned_ == begin_) recordLine_ = lineCount_ + 1;
  for (; scanned_ < buffer_.size(); ++scanned_) {
    const char c = buffer_[scanned_];
    if (format_ == InputFormat::csv) scan_ = after(c);
    if (c != '\n') continue;
    ++lineCount_;
    if (scan_ != Scan::quoted) break;
  }
  const bool isComplete = scanned_ < buffer_.size();
  const std::size_t size = scanned_ - begin_;
  if (size > maxRecordSize) {
    throw std::runtime_error("The request in line " + std::to_string(recordLine_) +
                             " has more than 1 MiB" +
                             (scan_ == Scan::quoted ? ", inside quotation marks." : "."));
  }
  if (!isComplete && (!hasEnded_ || size == 0)) return std::nullopt;
  std::string_view record = std::string_view(buffer_).substr(begin_, size);
  if (record.ends_with('\r')) record.remove_suffix(1);
  begin_ = scanned_ = isComplete ? scanned_ + 1 : scanned_;
  scan_ = Scan::fieldStart;
  return record;
}

std::optional<BatchRecord> BatchInput::next() {
  if (!detectFormat()) return std::nullopt;
  while (const auto record = takeRecord()) {
    if (isBlankRecord(*record)) continue;
    const std::uint64_t line = recordLine_;
    if (format_ == InputFormat::csv && header_.empty()) {
      readHeader(*record);
      continue;
    }
    BatchRecord read = format_ == InputFormat::csv ? readCSV(*record) : readJSON(*record);
    read.line = line;
    return read;
  }
  return std::nullopt;
}

void BatchInput::readHeader(std::string_view text) {
  std::string fault = splitCSV(text, header_);
  for (const std::string& name : required_) {
    if (fault.empty() && std::find(header_.begin(), header_.end(), name) == header_.end())
      fault = "it names no column '" + name + "'";
  }
  const std::set<std::string> names(header_.begin(), header_.end());
  if (fault.empty() && names.size() < header_.size()) fault = "it names a column twice";
  if (!fault.empty()) throw std::runtime_error("The header of the input is wrong: " + fault + '.');
}

BatchRecord BatchInput::readCSV(std::string_view text) const {
  BatchRecord record;
  std::vector<std::string> values;
  record.fault = splitCSV(text, values);
  if (record.fault.empty() && values.size() != header_.size()) {
    record.fault = "the line has " + std::to_string(values.size()) + " values, the header has " +
                   std::to_string(header_.size());
  }
  if (!record.fault.empty()) return record;
  for (std::size_t i = 0; i < values.size(); ++i)
    record.fields[header_[i]] = std::move(values[i]);
  return record;
}

BatchRecord BatchInput::readJSON(std::string_view text) const {
  BatchRecord record;
  const JSON object = JSON::parse(text);
  if (object.type() != JSON::Type::dictionary) record.fault = "the line is no JSON object";
  for (const auto& [key, value] : object) {
    if (value.type() == JSON::Type::array || value.type() == JSON::Type::dictionary) {
      record.fault = "the value of '" + key + "' is no text";
    } else if (value.type() != JSON::Type::null) {
      record.fields[key] = value.stringValue();
    }
  }
  return record;
}
