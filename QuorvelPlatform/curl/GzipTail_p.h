// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quorvelkit {

/// Watches the raw bytes of a gzip body. The network library takes a stream that was cut short for
/// a whole one; the length at the end of a whole stream (RFC 1952, section 2.3.1) tells.
class GzipTail {
 public:
  /// Starts over. Raw bytes of a chunked body come with the framing of their chunks (RFC 9112,
  /// section 7.1).
  void reset(bool isChunked);
  void take(std::string_view raw);
  /// Whether a stream of that many decoded bytes has come to its end. Also true for no raw bytes.
  bool isComplete(std::uint64_t decodedSize) const;
  bool isEmpty() const { return count_ == 0; }

 private:
  enum class Framing { none, size, sizeLineEnd, data, dataEnd, ended };

  void takeContent(std::string_view content);
  void takeFraming(char c);

  Framing framing_ = Framing::none;
  std::uint64_t chunkRest_ = 0;
  std::uint64_t count_ = 0;
  std::array<unsigned char, 4> last_{};
};

}  // namespace quorvelkit
