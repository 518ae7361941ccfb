// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace quorvelkit::bench {

/// Fetches one URL many times. fetch() returns after `requests` bodies of the expected size, with
/// at most `inFlight` requests at a time. Throws on a wrong body.
struct Fetcher {
  virtual ~Fetcher() = default;
  virtual void fetch(std::size_t requests, std::size_t inFlight) = 0;
};

/// libcurl without a layer above it, on the caller's thread: one reused easy handle, which has only
/// one request in flight; a multi handle with 6 connections, like the session, and reused easy
/// handles. keepingMulti() keeps the bodies of all transfers that ended at the same time until all
/// of them have been handled, the others free each body at once.
std::unique_ptr<Fetcher> bareEasy(const std::string& url, std::size_t bodySize);
std::unique_ptr<Fetcher> bareMulti(const std::string& url, std::size_t bodySize);
std::unique_ptr<Fetcher> keepingMulti(const std::string& url, std::size_t bodySize);
/// QNetworkAccessManager.
std::unique_ptr<Fetcher> qtManager(const std::string& url, std::size_t bodySize);

}  // namespace quorvelkit::bench
