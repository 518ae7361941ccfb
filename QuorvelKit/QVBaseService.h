// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVPendingCall.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/URLSession.h>
#include <QuorvelPlatform/URLSessionDataTask.h>

#include <concepts>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <utility>

namespace quorvelkit {

/// A function that receives the response of a call, which is never null.
template <class Response>
using QVCompletionHandler = std::function<void(std::shared_ptr<Response> response)>;

/// Replacements for single steps of the pipeline of a call. An empty function keeps the default.
template <class Response>
struct QVCallSteps {
  /// Runs before the request is sent. Default: QVBaseService::loadConfiguration. It must call
  /// `proceed` once, on the caller's thread or on the main queue. A second call is a programming
  /// error and stops the process. Without a call the completion handler is dropped.
  std::function<void(std::function<void()> proceed)> prepare;
  /// Makes the HTTP request. Default: QVBaseRequest::request.
  std::function<std::optional<URLRequest>()> makeHTTPRequest;
  /// Receives the response before the completion handler, on the callback thread. Default: nothing.
  /// If it throws std::bad_alloc, it is called again with the response that reports this error.
  std::function<void(const std::shared_ptr<Response>& response)> inspectResponse;
};

/// Base class of the service facades. Runs the pipeline of their calls on one shared session.
/// Thread-safe.
///
/// The contract of every call:
///
///  - Completion handler: runs exactly once for each request that is sent, on the main queue
///    (MainQueue) and never inside the call. It is destroyed there after it has run.
///  - Requests without a URL: a request whose QVBaseRequest::url is absent is not sent, and the
///    completion handler is dropped. docs/async.md lists the calls and causes. To detect them, call
///    QVBackendless::isUsableBaseURL() first, and url() in the handler of loadConfiguration().
///  - Return value: the running task if the configuration is loaded. Otherwise null, although a
///    response follows. A cancelled task still delivers a response; its isCancelled() is true.
///  - Errors: every failure is in QVBaseResponse::error. No request is sent twice. If memory runs
///    out after the first byte of the answer, the error is URLError::outOfMemory(), or
///    URLError::cannotParseResponse where libcurl cannot tell it from a line that is too long.
///  - Threads: any thread may call. A request object belongs to one call until the HTTP request of
///    that call is made. Calls that share a request object must come from one thread.
///  - Other forms: QVCall waits for the result of a call in a coroutine, by a std::future or by
///    blocking, always delivers a result, and has a deadline, retries and a std::stop_token.
///  - Programming errors: a null request and an empty completion handler stop the process.
///  - Exceptions: an exception from url() or another function that makes the HTTP request leaves
///    the call, or MainQueue::run() if the HTTP request is made there; the completion handler is
///    dropped. std::bad_alloc from these functions becomes an error of the response instead. call()
///    itself may throw std::bad_alloc. An exception from a completion handler leaves
///    MainQueue::run().
///
/// An application can derive a facade of its own, whose calls use the same pipeline:
///
///     class Weather : public quorvelkit::QVBaseService {
///      public:
///       static std::shared_ptr<quorvelkit::URLSessionDataTask> today(
///           std::shared_ptr<WeatherRequest> request,
///           quorvelkit::QVCompletionHandler<WeatherResponse> completionHandler) {
///         return call(std::move(request), std::move(completionHandler));
///       }
///     };
class QUORVELKIT_EXPORT QVBaseService {
 public:
  /// Returns the session of all calls. The first call creates it with
  /// URLSessionConfiguration::defaultConfiguration(); it is never destroyed.
  static std::shared_ptr<URLSession> sharedSession();

  /// Loads the configuration if none is cached, then calls the handler, also if loading failed (see
  /// QVConfiguration::cachedResponse). With a cached configuration the handler runs inside this
  /// call, and its exceptions leave this call. Otherwise it runs on the main queue.
  ///
  /// The handler never runs if no configuration is cached and the base URL does not parse, such as
  /// "127.0.0.1:8080". Call QVBackendless::isUsableBaseURL() first.
  static void loadConfiguration(std::function<void()> completionHandler);

 protected:
  /// Starts a call. `steps` replaces steps of the pipeline.
  template <std::derived_from<QVBaseResponse> Response>
  static std::shared_ptr<URLSessionDataTask> call(std::shared_ptr<QVBaseRequest> request,
                                                  QVCompletionHandler<Response> completionHandler,
                                                  QVCallSteps<Response> steps = {});

 private:
  template <class Response>
  static void send(const std::shared_ptr<detail::PendingCall<Response>>& pendingCall);
};

template <std::derived_from<QVBaseResponse> Response>
std::shared_ptr<URLSessionDataTask> QVBaseService::call(
    std::shared_ptr<QVBaseRequest> request, QVCompletionHandler<Response> completionHandler,
    QVCallSteps<Response> steps) {
  if (!request) fatalError("a service call needs a request");
  if (!completionHandler) fatalError("a service call needs a completion handler");
  using PendingCall = detail::PendingCall<Response>;
  const auto prepare = std::exchange(steps.prepare, nullptr);
  const auto pendingCall = std::make_shared<PendingCall>(typename PendingCall::ApplicationObjects{
      std::move(request), std::move(completionHandler), std::move(steps),
      detail::CallControl::takeCurrent()});
  const auto proceed = [pendingCall] {
    pendingCall->proceedOnce();
    send(pendingCall);
  };
  prepare ? prepare(proceed) : loadConfiguration(proceed);
  return pendingCall->currentTask();
}

template <class Response>
void QVBaseService::send(const std::shared_ptr<detail::PendingCall<Response>>& pendingCall) try {
  if (pendingCall->isInterrupted()) return pendingCall->drop();
  const auto& request = pendingCall->objects->request;
  const auto& makeHTTPRequest = pendingCall->objects->steps.makeHTTPRequest;
  auto httpRequest = makeHTTPRequest ? makeHTTPRequest() : request->request();
  if (!httpRequest) return pendingCall->drop();
  const auto task = sharedSession()->dataTask(
      *std::move(httpRequest), [pendingCall](auto data, auto urlResponse, auto error) {
        pendingCall->complete(std::move(data), std::move(urlResponse), std::move(error));
      });
  pendingCall->setTask(task);
  task->resume();
} catch (const std::bad_alloc& thrown) {
  pendingCall->setTask(nullptr);
  pendingCall->fail(thrown);
}

}  // namespace quorvelkit
