// SPDX-License-Identifier: Apache-2.0
#include "BatchOutput.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace {

/// A larger line number cannot belong to an input, and would need much memory.
constexpr std::uint64_t maxLine = std::uint64_t{1} << 36U;

[[noreturn]] void throwSystemError(const std::string& text) {
  throw std::runtime_error(text + ": " + std::generic_category().message(errno) + '.');
}

}  // namespace

BatchOutput::~BatchOutput() {
  if (descriptor_ != STDOUT_FILENO) close(descriptor_);
}

std::string_view BatchOutput::prefix(OutputFormat format) {
  switch (format) {
    case OutputFormat::ndjson: return "{\"line\":";
    case OutputFormat::geoJSONSequence: return "\x1E{\"type\":\"Feature\",\"id\":";
    case OutputFormat::csv: break;
  }
  return "";
}

void BatchOutput::open(const std::string& path, OutputFormat format, const std::string& header,
                       bool resumes) {
  path_ = path;
  format_ = format;
  header_ = header;
  descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (descriptor_ == -1) {
    descriptor_ = STDOUT_FILENO;
    throwSystemError("The file '" + path + "' cannot be opened");
  }
  if (flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
    throw std::runtime_error("Another process writes to the file '" + path + "'.");
  if (resumes) return readJournal();
  if (lseek(descriptor_, 0, SEEK_END) > 0) {
    throw std::runtime_error("The file '" + path +
                             "' has content. Continue it with --resume, or remove it.");
  }
}

void BatchOutput::readJournal() {
  std::string unread;
  off_t complete = 0;
  std::array<char, 65536> piece{};
  while (true) {
    const ssize_t size = read(descriptor_, piece.data(), piece.size());
    if (size < 0) throwSystemError("The file '" + path_ + "' cannot be read");
    if (size == 0) break;
    unread.append(piece.data(), static_cast<std::size_t>(size));
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = unread.find('\n', begin)) != std::string::npos;
         begin = end + 1)
      noteLine(std::string_view(unread).substr(begin, end - begin));
    complete += static_cast<off_t>(begin);
    unread.erase(0, begin);
  }
  // A device or a pipe has no size.
  if (unread.empty() && complete == 0) return;
  if (ftruncate(descriptor_, complete) != 0 || lseek(descriptor_, complete, SEEK_SET) < 0)
    throwSystemError("The file '" + path_ + "' cannot be continued");
}

void BatchOutput::noteLine(std::string_view line) {
  const bool isFirst = !std::exchange(hasContent_, true);
  if (isFirst && !header_.empty()) {
    if (line == header_) return;
    throw std::runtime_error("The file '" + path_ + "' has other columns: its header is not " +
                             header_ + '.');
  }
  const std::string_view start = prefix(format_);
  std::uint64_t number = 0;
  const bool isAnswer =
      line.starts_with(start) &&
      std::from_chars(line.data() + start.size(), line.data() + line.size(), number).ec ==
          std::errc();
  if (!isAnswer || number > maxLine) {
    throw std::runtime_error("The file '" + path_ +
                             "' cannot be continued: a line does not begin with the number of a "
                             "line of the input.");
  }
  const auto index = static_cast<std::size_t>(number);
  if (index >= answered_.size()) answered_.resize(index + 1);
  if (!answered_[index]) ++earlierAnswerCount_;
  answered_[index] = true;
}

void BatchOutput::flush() {
  for (std::size_t begin = 0; begin < buffer_.size();) {
    const ssize_t size = write(descriptor_, buffer_.data() + begin, buffer_.size() - begin);
    if (size < 0 && errno != EINTR)
      throw std::system_error(errno, std::generic_category(), "The output cannot be written");
    if (size > 0) begin += static_cast<std::size_t>(size);
  }
  if (!buffer_.empty()) hasContent_ = true;
  buffer_.clear();
}
