// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/page/ExchangeLog.h"
#include "sandbox/page/PageCalls.h"

#include <optional>
#include <string>

namespace quorvelkit::sandbox {

/// Serves a page for people at "/": the map, routes and search, and the exchanges of the servers.
/// All paths but "/" begin with "/page/". Thread-safe.
class PageService {
 public:
  /// Returns nothing if the path belongs to another service.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request, const std::string& rootURL);
  /// Adds an exchange of another service to those that the page shows.
  void addExchange(const HTTPRequest& request, const HTTPAnswer& answer) {
    exchanges_.add(request, answer);
  }

 private:
  ExchangeLog exchanges_;
  PageCalls calls_;
};

}  // namespace quorvelkit::sandbox
