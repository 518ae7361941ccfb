// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelPlatform/Data.h>
#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URLResponse.h>
#include <QuorvelPlatform/URLSessionDataTask.h>

#include <concepts>
#include <memory>
#include <optional>
#include <utility>

namespace quorvelkit {

class QVBaseResponse;
namespace detail {
template <class Response>
class PendingCall;
}  // namespace detail

/// Makes a response from the result of a data task and runs its steps. A null request is a
/// programming error and stops the process.
template <std::derived_from<QVBaseResponse> Response>
std::shared_ptr<Response> makeResponse(std::optional<Data> data,
                                       std::shared_ptr<QVBaseRequest> request,
                                       std::shared_ptr<const URLResponse> response = nullptr,
                                       std::optional<Error> error = std::nullopt,
                                       std::shared_ptr<URLSessionDataTask> task = nullptr);

/// Base class of all responses: the result of a data task, the body parsed as JSON, and one error.
///
/// | result of the data task          | error()                                               |
/// |----------------------------------|-------------------------------------------------------|
/// | cancelled                        | the error of the transport                            |
/// | transport error, UTF-8 body      | its domain and code, the body as description          |
/// | transport error, no UTF-8 body   | the error of the transport                            |
/// | status >= 400, UTF-8 body        | domain: class name, code: status, description: body   |
/// | status >= 400, no UTF-8 body     | the same with the phrase of the status as description |
/// | any other status                 | the error of the transport, normally absent           |
///
/// The error says nothing about the form of the body: an answer with status 200 may contain HTML or
/// be empty. In both cases json() is null without an error. To get the parse error, parse data()
/// again with the constructor of JSON that has an error argument. The session of this library never
/// returns both an error and a body.
///
/// Only makeResponse() makes responses. A derived class inherits the constructors
/// (`using QVBaseResponse::QVBaseResponse;`) and overrides the steps below, which run in this order
/// after construction. The steps must not throw, except std::bad_alloc: the call then delivers a
/// second response of the same class, which contains only an error of the transport and whose steps
/// run too.
///
/// Threads: made on the callback thread; used by the completion handler on the main queue. Not
/// thread-safe.
class QUORVELKIT_EXPORT QVBaseResponse : public QVBaseObject {
 public:
  class Key;

  /// Stores the result of a data task. Only makeResponse() calls it.
  QVBaseResponse(Key key, std::optional<Data> data, std::shared_ptr<QVBaseRequest> request,
                 std::shared_ptr<const URLResponse> response, std::optional<Error> error,
                 std::shared_ptr<URLSessionDataTask> task);
  explicit QVBaseResponse(std::optional<JSON> json) = delete;
  QVBaseResponse(const QVBaseResponse&) = delete;
  QVBaseResponse& operator=(const QVBaseResponse&) = delete;
  ~QVBaseResponse() override;

  /// The body. Empty if the answer has no body; absent if there is no answer.
  virtual const std::optional<Data>& data() const;
  virtual void setData(std::optional<Data> data);
  /// The request object of the call.
  virtual const std::shared_ptr<QVBaseRequest>& request() const;
  virtual void setRequest(std::shared_ptr<QVBaseRequest> request);
  /// An HTTPURLResponse if a server answered, else null.
  virtual const std::shared_ptr<const URLResponse>& response() const;
  virtual void setResponse(std::shared_ptr<const URLResponse> response);
  /// The error (see the table of this class).
  virtual const std::optional<Error>& error() const;
  virtual void setError(std::optional<Error> error);
  /// The data task of the call, or null.
  virtual const std::shared_ptr<URLSessionDataTask>& task() const;
  virtual void setTask(std::shared_ptr<URLSessionDataTask> task);

  /// First step. The default does nothing.
  virtual void processResponse();
  /// Second step: replaces the error if the status is 400 or greater.
  virtual void processErrors();
  /// Third step: makes a UTF-8 body the description of the error. Skips cancelled calls.
  virtual void processTracking();

  /// Returns true if the error has the code URLError::cancelled.
  virtual bool isCancelled() const;
  /// Returns true and increments the request's retryCount() if it is less than
  /// maxNumberOfRetries(). Ignores error and status, and sends nothing: to retry, the application
  /// calls the facade again with the same request.
  virtual bool shouldRetryRequest();

 protected:
  /// Last step: makes the models from json(). An override must call the base class first.
  virtual void buildModel();
  /// Returns true if the body was parsed as JSON. json() is null for the JSON text `null` and also
  /// for an empty or invalid body.
  bool hasJSONBody() const { return hasJSONBody_; }

 private:
  template <std::derived_from<QVBaseResponse> Response>
  friend std::shared_ptr<Response> makeResponse(std::optional<Data>, std::shared_ptr<QVBaseRequest>,
                                                std::shared_ptr<const URLResponse>,
                                                std::optional<Error>,
                                                std::shared_ptr<URLSessionDataTask>);
  template <class Response>
  friend class detail::PendingCall;
  void process();

  std::optional<Data> data_;
  std::shared_ptr<QVBaseRequest> request_;
  std::shared_ptr<const URLResponse> response_;
  std::optional<Error> error_;
  std::shared_ptr<URLSessionDataTask> task_;
  bool hasJSONBody_ = false;
};

/// An argument of the constructors that only makeResponse() can make.
class QVBaseResponse::Key {
  template <std::derived_from<QVBaseResponse> Response>
  friend std::shared_ptr<Response> makeResponse(std::optional<Data>, std::shared_ptr<QVBaseRequest>,
                                                std::shared_ptr<const URLResponse>,
                                                std::optional<Error>,
                                                std::shared_ptr<URLSessionDataTask>);
  template <class Response>
  friend class detail::PendingCall;
  explicit Key() = default;
};

template <std::derived_from<QVBaseResponse> Response>
std::shared_ptr<Response> makeResponse(std::optional<Data> data,
                                       std::shared_ptr<QVBaseRequest> request,
                                       std::shared_ptr<const URLResponse> response,
                                       std::optional<Error> error,
                                       std::shared_ptr<URLSessionDataTask> task) {
  auto made = std::make_shared<Response>(QVBaseResponse::Key(), std::move(data), std::move(request),
                                         std::move(response), std::move(error), std::move(task));
  static_cast<QVBaseResponse&>(*made).process();
  return made;
}

}  // namespace quorvelkit
