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

/// Receives the answer of a URLProtocol: a response, pieces of the body, then the end or a failure.
/// Thread-safe. Calls after the end and after stopLoading() are ignored.
class QUORVELKIT_EXPORT URLProtocolClient {
 public:
  virtual ~URLProtocolClient();
  /// The response without its body. Comes first.
  virtual void didReceive(std::shared_ptr<const URLResponse> response) = 0;
  /// The next piece of the body.
  virtual void didLoad(const Data& piece) = 0;
  /// The end of the answer.
  virtual void didFinishLoading() = 0;
  /// The failure of the answer. The task ends with this error.
  virtual void didFail(const Error& error) = 0;
};

/// Answers requests instead of the network, for tests and offline modes of an application. Each
/// object answers one request.
class QUORVELKIT_EXPORT URLProtocol {
 public:
  /// Creates the protocol for a request. Returns null if another factory or the network is to
  /// answer. Called on the session's IO thread. Must not throw.
  using Factory = std::function<std::unique_ptr<URLProtocol>(const URLRequest& request)>;
  /// Identifies a registered factory.
  using Registration = std::uint64_t;

  /// Registers a factory for all requests that start from now on, in all sessions. Factories that
  /// were registered later are asked first, the network is used last. Factories are not asked for
  /// redirects. An empty factory is a programming error and stops the process. Thread-safe.
  static Registration registerFactory(Factory factory);
  /// Removes a factory. It may still be called once for a request that is starting at this moment.
  /// Thread-safe.
  static void unregister(Registration registration);

  URLProtocol(const URLProtocol&) = delete;
  URLProtocol& operator=(const URLProtocol&) = delete;
  virtual ~URLProtocol();

  /// Starts to answer. Called on the session's IO thread. Must not block and must not throw. The
  /// request is valid only during the call. The client may be called inside this call.
  virtual void startLoading(const URLRequest& request,
                            std::shared_ptr<URLProtocolClient> client) = 0;
  /// Stops the answer: the task was cancelled, timed out or ended. Called once, on the session's IO
  /// thread, which then destroys the protocol. Must not throw.
  virtual void stopLoading() = 0;

 protected:
  URLProtocol() = default;
};

}  // namespace quorvelkit
