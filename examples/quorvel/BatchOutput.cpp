// SPDX-License-Identifier: Apache-2.0
#include "BatchOutput.h"

#include "ServerText.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
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

/// The second file is emptied when it has more bytes: to empty it often would take time.
constexpr std::size_t minClearedSize = std::size_t{1} << 20U;

[[noreturn]] void throwSystemError(const std::string& text) {
  throw std::runtime_error(text + ": " + std::generic_category().message(errno) + '.');
}

/// Calls a function with each whole line of a file, without its line break. Returns the size of
/// these lines.
template <class Use>
off_t readLines(int descriptor, const std::string& path, const Use& use) {
  std::string unread;
  off_t complete = 0;
  std::array<char, 65536> piece{};
  while (true) {
    const ssize_t size = read(descriptor, piece.data(), piece.size());
    if (size < 0) throwSystemError("The file '" + path + "' cannot be read");
    if (size == 0) return complete;
    unread.append(piece.data(), static_cast<std::size_t>(size));
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = unread.find('\n', begin)) != std::string::npos;
         begin = end + 1)
      use(std::string_view(unread).substr(begin, end - begin));
    complete += static_cast<off_t>(begin);
    unread.erase(0, begin);
  }
}

/// Cuts a file and continues at its end.
void setEnd(int descriptor, off_t size) {
  if (ftruncate(descriptor, size) != 0 || lseek(descriptor, size, SEEK_SET) < 0)
    throw std::system_error(errno, std::generic_category(), "The output cannot be continued");
}

void writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t size = write(descriptor, bytes.data(), bytes.size());
    if (size < 0 && errno != EINTR)
      throw std::system_error(errno, std::generic_category(), "The output cannot be written");
    if (size > 0) bytes.remove_prefix(static_cast<std::size_t>(size));
  }
}

}  // namespace

BatchOutput::~BatchOutput() {
  if (descriptor_ != STDOUT_FILENO) close(descriptor_);
  if (aheadDescriptor_ == -1) return;
  // The file has other content if it could not be continued.
  if (lseek(aheadDescriptor_, 0, SEEK_END) == 0) removeAhead();
  close(aheadDescriptor_);
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
  isTerminal_ = isatty(descriptor_) != 0;
  struct stat status {};
  const bool isFile = fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
  if (resumes) {
    if (!isFile) throw std::runtime_error("'" + path + "' cannot be continued: it is no file.");
    readJournal();
  } else if (lseek(descriptor_, 0, SEEK_END) > 0) {
    throw std::runtime_error("The file '" + path +
                             "' has content. Continue it with --resume, or remove it.");
  }
  if (!isFile) return;
  aheadDescriptor_ = ::open(aheadPath().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (aheadDescriptor_ == -1) throwSystemError("The file '" + aheadPath() + "' cannot be opened");
  if (!resumes && lseek(aheadDescriptor_, 0, SEEK_END) > 0) {
    throw std::runtime_error("The file '" + aheadPath() +
                             "' has answers. Continue with --resume, or remove it.");
  }
  readAhead();
}

void BatchOutput::readJournal() {
  const off_t size =
      readLines(descriptor_, path_, [this](std::string_view line) { noteLine(line); });
  const off_t end = lseek(descriptor_, 0, SEEK_END);
  checkBegunLine(descriptor_, path_, size, hasContent_ ? "" : header_);
  if (end > size) setEnd(descriptor_, size);
}

/// Throws if the rest of a file, after its last whole line, is not the beginning of an answer or of
/// the header: then the file is not the journal of a batch.
void BatchOutput::checkBegunLine(int descriptor, const std::string& path, off_t begin,
                                 std::string_view header) const {
  std::array<char, 64> bytes;
  const ssize_t size = pread(descriptor, bytes.data(), bytes.size(), begin);
  if (size <= 0) return;
  const std::string_view rest(bytes.data(), static_cast<std::size_t>(size));
  const std::string_view start = header.empty() ? prefix(format_) : header;
  const bool fits = rest.size() <= start.size()
                        ? start.starts_with(rest)
                        : rest.starts_with(start) && header.empty() && rest[start.size()] >= '0' &&
                              rest[start.size()] <= '9';
  if (!fits)
    throw std::runtime_error("The file '" + path + "' cannot be continued: it has other content.");
}

void BatchOutput::readAhead() {
  const off_t size = readLines(aheadDescriptor_, aheadPath(), [this](std::string_view line) {
    const std::uint64_t number = numberOf(line, aheadPath());
    if (!hasAnswer(number)) ahead_.insert_or_assign(number, std::string(line) + '\n');
  });
  checkBegunLine(aheadDescriptor_, aheadPath(), size, "");
  setEnd(aheadDescriptor_, size);
  aheadSize_ = static_cast<std::size_t>(size);
  earlierAnswerCount_ += ahead_.size();
}

std::optional<std::string> BatchOutput::takeAhead(std::uint64_t line) {
  const auto found = ahead_.find(line);
  if (found == ahead_.end()) return std::nullopt;
  auto text = std::move(found->second);
  ahead_.erase(found);
  return text;
}

void BatchOutput::noteLine(std::string_view line) {
  const bool isFirst = !std::exchange(hasContent_, true);
  if (isFirst && !header_.empty()) {
    if (line == header_) return;
    throw std::runtime_error("The file '" + path_ + "' has other columns: its header is not " +
                             header_ + '.');
  }
  const auto index = static_cast<std::size_t>(numberOf(line, path_));
  if (index >= answered_.size()) answered_.resize(index + 1);
  if (!answered_[index]) ++earlierAnswerCount_;
  answered_[index] = true;
}

std::uint64_t BatchOutput::numberOf(std::string_view line, const std::string& path) const {
  const std::string_view start = prefix(format_);
  std::uint64_t number = 0;
  if (line.starts_with(start)) {
    const char* const end = line.data() + line.size();
    const auto parsed = std::from_chars(line.data() + start.size(), end, number);
    const bool isNumber = parsed.ec == std::errc() && parsed.ptr != end && *parsed.ptr == ',';
    if (isNumber && number <= maxLine) return number;
  }
  throw std::runtime_error("The file '" + path +
                           "' cannot be continued: a line does not begin with the number of a line "
                           "of the input.");
}

void BatchOutput::add(std::string_view line) {
  if (!isTerminal()) {
    buffer_ += line;
  } else {
    buffer_ += printable(line.substr(0, line.size() - 1)) + '\n';
  }
}

void BatchOutput::flush() {
  writeAll(descriptor_, buffer_);
  if (!buffer_.empty()) hasContent_ = true;
  buffer_.clear();
  // A process that is killed between the two steps loses the answers that are ahead: their lines
  // are then asked again.
  if (std::exchange(clearsAhead_, false)) {
    setEnd(aheadDescriptor_, 0);
    aheadSize_ = 0;
  }
  writeAll(aheadDescriptor_, aheadBuffer_);
  aheadSize_ += aheadBuffer_.size();
  aheadBuffer_.clear();
}

void BatchOutput::addAhead(std::string_view line) {
  if (aheadDescriptor_ != -1) aheadBuffer_ += line;
}

void BatchOutput::clearAhead() {
  aheadBuffer_.clear();
  // Lines that stand in the first file too do not matter.
  clearsAhead_ = aheadSize_ > minClearedSize;
}

void BatchOutput::removeAhead() {
  if (aheadDescriptor_ != -1) unlink(aheadPath().c_str());
}
