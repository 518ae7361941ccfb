// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Data.h>
#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URLRequest.h>
#include <QuorvelPlatform/URLResponse.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace quorvelkit {

/// Where a URLProtocol delivers its answer: a response, pieces of the body, then the end or a
/// failure. May be called from any thread; calls after the end or after stopLoading() are ignored.
class QUORVELKIT_EXPORT URLProtocolClient {
 public:
  virtual ~URLProtocolClient();
  virtual void didReceive(std::shared_ptr<const URLResponse> response) = 0;
  virtual void didLoad(const Data& piece) = 0;
  virtual void didFinishLoading() = 0;
  virtual void didFail(const Error& error) = 0;
};

/// Answers requests in place of the network: the seam for an application's own tests and offline
/// modes. One object serves one request.
class QUORVELKIT_EXPORT URLProtocol {
 public:
  /// Makes the protocol that will answer a request, or null to leave the request to others. Runs
  /// on the session's IO thread.
  using Factory = std::function<std::unique_ptr<URLProtocol>(const URLRequest& request)>;
  using Registration = std::uint64_t;

  /// Asks this factory before those registered earlier and before the network, for every request
  /// of every session that starts from now on. An empty factory is a programming error. Redirects
  /// that the network answers with are not offered to factories. Any thread.
  static Registration registerFactory(Factory factory);
  /// Asks this factory no more; a request that is being offered to it right now may still reach
  /// it. Any thread.
  static void unregister(Registration registration);

  URLProtocol(const URLProtocol&) = delete;
  URLProtocol& operator=(const URLProtocol&) = delete;
  virtual ~URLProtocol();

  /// Starts answering. Must not block: it runs on the session's IO thread. The request is valid
  /// during the call only. The client may be used inside the call already.
  virtual void startLoading(const URLRequest& request,
                            std::shared_ptr<URLProtocolClient> client) = 0;
  /// Stops answering: the task was cancelled, timed out or ended. Runs once, on the session's IO
  /// thread, which then destroys the protocol.
  virtual void stopLoading() = 0;

 protected:
  URLProtocol() = default;
};

}  // namespace quorvelkit
