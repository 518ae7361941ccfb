// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URL.h>

#include <cstdint>
#include <optional>
#include <string>

namespace quorvelkit {

/// Describes an answer without its body. Immutable and thread-safe.
class QUORVELKIT_EXPORT URLResponse {
 public:
  /// Stores these values.
  URLResponse(URL url, std::optional<std::string> mimeType,
              std::optional<std::int64_t> expectedContentLength,
              std::optional<std::string> textEncodingName);
  URLResponse(const URLResponse&) = delete;
  URLResponse& operator=(const URLResponse&) = delete;
  virtual ~URLResponse();

  /// The URL of the answer, after redirects.
  const URL& url() const noexcept { return url_; }
  /// The media type in lower case, without parameters. Absent if there is none.
  const std::optional<std::string>& mimeType() const noexcept { return mimeType_; }
  /// The announced length of the body in bytes, before decoding. Absent if there is none.
  std::optional<std::int64_t> expectedContentLength() const noexcept {
    return expectedContentLength_;
  }
  /// The announced text encoding, such as "utf-8". Absent if there is none.
  const std::optional<std::string>& textEncodingName() const noexcept { return textEncodingName_; }

 private:
  URL url_;
  std::optional<std::string> mimeType_;
  std::optional<std::int64_t> expectedContentLength_;
  std::optional<std::string> textEncodingName_;
};

}  // namespace quorvelkit
