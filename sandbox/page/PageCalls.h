// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"

#include <optional>
#include <semaphore>
#include <string>

namespace quorvelkit::sandbox {

/// Answers the page with results of the library: the paths /page/route, /page/suggest and
/// /page/candidates make a call of QuorvelKit to this program itself, so that the page shows the
/// requests of the library and not those of a browser.
///
/// Needs a MainQueueThread, and this program as the backend (QVBackendless::setBaseURL); it answers
/// with status 503 otherwise. Thread-safe; blocks until the call has ended.
class PageCalls {
 public:
  /// Returns nothing if the path belongs to another service.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request, const std::string& rootURL);

 private:
  /// Fewer than the threads of the server, which answers the calls, too.
  static constexpr int maximumCalls = 8;
  std::counting_semaphore<maximumCalls> free_{maximumCalls};
};

}  // namespace quorvelkit::sandbox
