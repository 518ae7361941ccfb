// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace quorvelkit::bench {

/// Something that fetches one address many times: `fetch` returns when so many answers of the
/// expected size are in, with at most so many requests on their way. A wrong answer throws.
struct Fetcher {
  virtual ~Fetcher() = default;
  virtual void fetch(std::size_t requests, std::size_t inFlight) = 0;
};

/// libcurl as barely as it goes, in the caller's thread: one easy handle that is reused (which has
/// one request in flight by nature), and a multi handle with the session's 6 connections and
/// handles that are reused.
std::unique_ptr<Fetcher> bareEasy(const std::string& url, std::size_t bodySize);
std::unique_ptr<Fetcher> bareMulti(const std::string& url, std::size_t bodySize);
/// The network access manager of Qt.
std::unique_ptr<Fetcher> qtManager(const std::string& url, std::size_t bodySize);

}  // namespace quorvelkit::bench
