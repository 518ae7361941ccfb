// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/URLResponse.h>

#include <utility>

namespace quorvelkit {

URLResponse::URLResponse(URL url, std::optional<std::string> mimeType,
                         std::optional<std::int64_t> expectedContentLength,
                         std::optional<std::string> textEncodingName)
    : url_(std::move(url)),
      mimeType_(std::move(mimeType)),
      expectedContentLength_(expectedContentLength),
      textEncodingName_(std::move(textEncodingName)) {}

URLResponse::~URLResponse() = default;

}  // namespace quorvelkit
