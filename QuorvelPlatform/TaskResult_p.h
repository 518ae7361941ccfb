// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Data.h>
#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/URL.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/URLResponse.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace quorvelkit {

/// The header block of an HTTP answer. The callback thread parses it into a response, so that the
/// IO thread does not parse.
struct HTTPHeaderBlock {
  int statusCode = 0;
  /// The header lines without the status line, each with its line end.
  std::string lines;
  /// The URL after redirects. Absent if there was no redirect.
  std::optional<URL> url;
};

/// The result of a data task: a response and a body, or an error.
struct TaskResult {
  static TaskResult failure(std::int64_t code, std::string technicalText = {}) {
    TaskResult result;
    result.errorCode = code;
    result.technicalText = std::move(technicalText);
    return result;
  }
  /// Allocates no memory.
  static TaskResult outOfMemory() {
    TaskResult result;
    result.error = URLError::outOfMemory();
    return result;
  }

  /// A URLError code, or 0 for success.
  std::int64_t errorCode = 0;
  /// The text for Error::technicalDescription(). Empty if there is none.
  std::string technicalText;
  /// An error that already exists. It has priority over errorCode.
  std::optional<Error> error;
  std::shared_ptr<const URLResponse> response;
  /// The header block from which the response is built. Absent if a URL protocol of the application
  /// answered.
  std::optional<HTTPHeaderBlock> header;
  Data body;
};

}  // namespace quorvelkit
