// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URL.h>

#include <cstdint>
#include <optional>
#include <string>

namespace quorvelkit {

/// What is known of an answer apart from its body. Immutable.
class QUORVELKIT_EXPORT URLResponse {
 public:
  URLResponse(URL url, std::optional<std::string> mimeType,
              std::optional<std::int64_t> expectedContentLength,
              std::optional<std::string> textEncodingName);
  URLResponse(const URLResponse&) = delete;
  URLResponse& operator=(const URLResponse&) = delete;
  virtual ~URLResponse();

  /// The URL that answered, after redirects.
  const URL& url() const noexcept { return url_; }
  /// The media type in lower case, without parameters.
  const std::optional<std::string>& mimeType() const noexcept { return mimeType_; }
  /// The length that the server announced, in bytes on the wire.
  std::optional<std::int64_t> expectedContentLength() const noexcept {
    return expectedContentLength_;
  }
  /// The text encoding that the server announced ("utf-8").
  const std::optional<std::string>& textEncodingName() const noexcept { return textEncodingName_; }

 private:
  URL url_;
  std::optional<std::string> mimeType_;
  std::optional<std::int64_t> expectedContentLength_;
  std::optional<std::string> textEncodingName_;
};

}  // namespace quorvelkit
