// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"

#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace quorvelkit::sandbox {

/// The backend service: answers logins with a token, and requests that carry a valid token with the
/// configuration. Thread-safe.
class BackendService {
 public:
  /// Returns nothing if the path belongs to another service. `rootURL` is the root URL of the
  /// navigation server and the find server.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request, const std::string& rootURL);

 private:
  HTTPAnswer login(const HTTPRequest& request);
  HTTPAnswer configuration(const HTTPRequest& request, const std::string& rootURL);

  std::mutex mutex_;
  std::set<std::string> tokens_;
};

}  // namespace quorvelkit::sandbox
