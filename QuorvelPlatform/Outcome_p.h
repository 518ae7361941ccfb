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

/// The status and the header lines of an HTTP answer as they came; made into a response on the
/// callback thread, so that the IO thread does not parse.
struct HTTPHead {
  int statusCode = 0;
  /// Header lines without the status line, each with its line end.
  std::string lines;
  /// Where redirects led to; absent without redirects.
  std::optional<URL> url;
};

/// How a load ended.
struct Outcome {
  static Outcome failure(std::int64_t code, std::string technicalText = {}) {
    Outcome outcome;
    outcome.errorCode = code;
    outcome.technicalText = std::move(technicalText);
    return outcome;
  }
  /// Takes no memory.
  static Outcome outOfMemory() {
    Outcome outcome;
    outcome.error = URLError::outOfMemory();
    return outcome;
  }

  /// A code of URLError, 0 for none.
  std::int64_t errorCode = 0;
  /// Why, for Error::technicalDescription(); empty when nothing more is known.
  std::string technicalText;
  /// The error of a protocol that made its own.
  std::optional<Error> error;
  std::shared_ptr<const URLResponse> response;
  std::optional<HTTPHead> head;
  Data body;
};

}  // namespace quorvelkit
