// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/curl/GzipTrailer_p.h>

#include <algorithm>

namespace quorvelkit {

void GzipTrailer::reset(bool isChunked) {
  framing_ = isChunked ? Framing::size : Framing::none;
  chunkBytesLeft_ = 0;
  count_ = 0;
}

void GzipTrailer::append(std::string_view raw) {
  while (!raw.empty()) {
    if (framing_ == Framing::none) return appendContent(raw);
    if (framing_ == Framing::data) {
      const std::size_t part = std::min<std::uint64_t>(raw.size(), chunkBytesLeft_);
      appendContent(raw.substr(0, part));
      raw.remove_prefix(part);
      chunkBytesLeft_ -= part;
      if (chunkBytesLeft_ == 0) framing_ = Framing::dataEnd;
    } else {
      readFraming(raw.front());
      raw.remove_prefix(1);
    }
  }
}

void GzipTrailer::readFraming(char c) {
  const char lowered = asciiLowered(c);
  if (framing_ == Framing::size && c >= '0' && c <= '9') {
    chunkBytesLeft_ = chunkBytesLeft_ * 16 + static_cast<std::uint64_t>(c - '0');
  } else if (framing_ == Framing::size && lowered >= 'a' && lowered <= 'f') {
    chunkBytesLeft_ = chunkBytesLeft_ * 16 + static_cast<std::uint64_t>(lowered - 'a' + 10);
  } else if (framing_ == Framing::dataEnd) {
    if (c == '\n') framing_ = Framing::size;
  } else if (framing_ != Framing::ended) {
    framing_ = Framing::sizeLineEnd;
    if (c == '\n') framing_ = chunkBytesLeft_ == 0 ? Framing::ended : Framing::data;
  }
}

void GzipTrailer::appendContent(std::string_view content) {
  count_ += content.size();
  if (content.size() > last_.size()) content.remove_prefix(content.size() - last_.size());
  for (const char byte : content) {
    std::copy(last_.begin() + 1, last_.end(), last_.begin());
    last_.back() = static_cast<unsigned char>(byte);
  }
}

bool GzipTrailer::isComplete(std::uint64_t decodedSize) const {
  constexpr std::uint64_t shortestStream = 18;
  if (count_ == 0) return true;
  const std::uint32_t announced = last_[0] | static_cast<std::uint32_t>(last_[1]) << 8U |
                                  static_cast<std::uint32_t>(last_[2]) << 16U |
                                  static_cast<std::uint32_t>(last_[3]) << 24U;
  return count_ >= shortestStream && announced == static_cast<std::uint32_t>(decodedSize);
}

}  // namespace quorvelkit
