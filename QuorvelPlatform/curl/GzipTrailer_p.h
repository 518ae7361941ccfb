// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quorvelkit {

/// Keeps the last bytes of a gzip body to check that the body is complete: a gzip stream ends with
/// the length of its decoded data (RFC 1952, section 2.3.1). libcurl does not check this.
class GzipTrailer {
 public:
  /// Starts a new body. The raw bytes of a chunked body contain chunk sizes and trailers (RFC 9112,
  /// section 7.1), which are skipped.
  void reset(bool isChunked);
  void append(std::string_view raw);
  /// Returns true if the stream ended and has this decoded size, or if there were no raw bytes.
  bool isComplete(std::uint64_t decodedSize) const;
  bool isEmpty() const { return count_ == 0; }

 private:
  /// The part of a chunked body to which the next byte belongs; none if the body is not chunked.
  enum class Framing { none, size, sizeLineEnd, data, dataEnd, ended };

  void appendContent(std::string_view content);
  void readFraming(char c);

  Framing framing_ = Framing::none;
  std::uint64_t chunkBytesLeft_ = 0;
  std::uint64_t count_ = 0;
  std::array<unsigned char, 4> last_{};
};

}  // namespace quorvelkit
