// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVCallUnderWay.h>
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

/// What takes the response of a call.
template <class Response>
using QVCompletionHandler = std::function<void(std::shared_ptr<Response> response)>;

/// In what a kind of call differs from the standard road; what is empty does not differ.
template <class Response>
struct QVCallDifferences {
  /// What comes before sending, in place of loadConfiguration(): calls the function that it gets
  /// to go on, once, on the caller's thread or on the main queue. A second time is a programming
  /// error and stops the process. When it never goes on, the handler is dropped.
  std::function<void(std::function<void()> goOn)> before;
  /// Makes the HTTP request, in place of QVBaseRequest::request.
  std::function<std::optional<URLRequest>()> httpRequest;
  /// Sees the response first, on the session's callback thread. When it throws std::bad_alloc it
  /// is called again with the response that tells of that.
  std::function<void(const std::shared_ptr<Response>& response)> after;
};

/// The base of the service facades: the session that all of them share, and the one road on which
/// each of their calls goes. This is the contract of every call:
///
///  - The handler runs exactly once for each request that is sent, on the main queue (MainQueue),
///    never inside the call. It is destroyed there, too, right after it ran.
///  - A request without an address (QVBaseRequest::url) is not sent: the handler is dropped
///    without having run. docs/async.md lists the calls and causes. Ask
///    QVBackendless::isUsableBaseURL() first, and url() in the handler of loadConfiguration().
///  - The call returns the running task once the configuration is loaded, and nothing before
///    that, even though a response will come. A cancelled task still delivers its response, one
///    that isCancelled().
///  - Every failure is in the response's error(). Nothing is tried a second time. When there is not
///    enough memory between the first byte of the answer and the handler, the error is
///    URLError::outOfMemory(); call() itself may throw std::bad_alloc.
///  - Any thread may call, but a request object belongs to one call at a time until its HTTP
///    request is made; calls that share it come from one thread (the main thread, best).
///  - A null request or an empty handler is a programming error and stops the process.
///  - What url() and the other builders throw (but std::bad_alloc, which becomes an error of the
///    response) leaves the call, or MainQueue::run() when the request
///    is made there, and the handler is dropped. What a handler throws leaves MainQueue::run().
///
/// An application's own facade derives from this class and sends its own requests on the same
/// road:
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
  /// The session of all calls, made with URLSessionConfiguration::defaultConfiguration() on first
  /// use; the same one for the rest of the process.
  static std::shared_ptr<URLSession> sharedSession();

  /// Sees to it that the configuration is loaded, then calls the handler, also when loading
  /// failed (QVConfiguration::cachedResponse tells): at once, inside this call, when the
  /// configuration is there already (what it throws leaves this call then), else later on the main
  /// queue. It never runs when no configuration is cached and the base URL does not parse, as
  /// "127.0.0.1:8080" does not: QVBackendless::isUsableBaseURL() tells that before.
  static void loadConfiguration(std::function<void()> completionHandler);

 protected:
  /// Sends a request on the standard road, or on one that differs from it as given.
  template <std::derived_from<QVBaseResponse> Response>
  static std::shared_ptr<URLSessionDataTask> call(std::shared_ptr<QVBaseRequest> request,
                                                  QVCompletionHandler<Response> completionHandler,
                                                  QVCallDifferences<Response> differences = {});

 private:
  template <class Response>
  static void send(const std::shared_ptr<detail::CallUnderWay<Response>>& underWay);
};

template <std::derived_from<QVBaseResponse> Response>
std::shared_ptr<URLSessionDataTask> QVBaseService::call(
    std::shared_ptr<QVBaseRequest> request, QVCompletionHandler<Response> completionHandler,
    QVCallDifferences<Response> differences) {
  if (!request) fatalError("a service call needs a request");
  if (!completionHandler) fatalError("a service call needs a completion handler");
  using UnderWay = detail::CallUnderWay<Response>;
  const auto before = std::exchange(differences.before, nullptr);
  const auto underWay = std::make_shared<UnderWay>(typename UnderWay::Work{
      std::move(request), std::move(completionHandler), std::move(differences)});
  const auto goOn = [underWay] {
    underWay->goesOnOnce();
    send(underWay);
  };
  before ? before(goOn) : loadConfiguration(goOn);
  return underWay->currentTask();
}

template <class Response>
void QVBaseService::send(const std::shared_ptr<detail::CallUnderWay<Response>>& underWay) try {
  const auto& request = underWay->work->request;
  const auto& make = underWay->work->differences.httpRequest;
  auto httpRequest = make ? make() : request->request();
  if (!httpRequest) return underWay->drop();
  const auto task = sharedSession()->dataTask(
      *std::move(httpRequest), [underWay](auto data, auto urlResponse, auto error) {
        underWay->complete(std::move(data), std::move(urlResponse), std::move(error));
      });
  underWay->setTask(task);
  task->resume();
} catch (const std::bad_alloc& thrown) {
  underWay->setTask(nullptr);
  underWay->fail(thrown);
}

}  // namespace quorvelkit
