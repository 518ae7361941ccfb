// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"

#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace quorvelkit::sandbox {

/// The backend service: logs the library's service account in and hands out the configuration
/// file, to the bearers of its tokens only. Any threads at once.
class BackendService {
 public:
  /// Answers what is addressed to this service. `rootURL` is where the navigation server and the
  /// find server are.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request, const std::string& rootURL);

 private:
  HTTPAnswer login(const HTTPRequest& request);
  HTTPAnswer configuration(const HTTPRequest& request, const std::string& rootURL);

  std::mutex mutex_;
  std::set<std::string> tokens_;
};

}  // namespace quorvelkit::sandbox
