// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"

#include <QuorvelKit/JSON/JSON.h>

#include <cstdint>
#include <deque>
#include <mutex>
#include <utility>

namespace quorvelkit::sandbox {

/// The last exchanges of the servers with their clients, for the page: the request with its fields
/// by name, and status, type and body of the answer. Secrets are shortened, and long fields and
/// bodies cut, before they are stored. Thread-safe.
class ExchangeLog {
 public:
  void add(const HTTPRequest& request, const HTTPAnswer& answer);
  /// Returns {"last": number, "exchanges": [...]}: the exchanges after a number, the oldest first.
  JSON after(std::int64_t number) const;

 private:
  mutable std::mutex mutex_;
  std::int64_t last_ = 0;
  std::deque<std::pair<std::int64_t, JSON>> exchanges_;
};

}  // namespace quorvelkit::sandbox
