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
class CallUnderWay;
}  // namespace detail

/// Makes a response of what the transport gave and runs its steps. A null request is a
/// programming error and stops the process.
template <std::derived_from<QVBaseResponse> Response>
std::shared_ptr<Response> makeResponse(std::optional<Data> data,
                                       std::shared_ptr<QVBaseRequest> request,
                                       std::shared_ptr<const URLResponse> response = nullptr,
                                       std::optional<Error> error = std::nullopt,
                                       std::shared_ptr<URLSessionDataTask> task = nullptr);

/// What a call comes back with, and the base of every response: all that the transport gave, the
/// body parsed as JSON, and one error that says what went wrong with either.
///
/// | what happened                           | error()                                           |
/// |-----------------------------------------|---------------------------------------------------|
/// | cancelled                               | the transport's own                               |
/// | error of the transport, UTF-8 body      | its domain and code, body as text                 |
/// | error of the transport, no such body    | the transport's own                               |
/// | status 400 or above, UTF-8 body         | class name as domain, status as code, body as text|
/// | status 400 or above, no such body       | the same with the status' phrase as text          |
/// | any other status                        | the transport's, normally absent                  |
///
/// An absent error promises nothing about the body: an answer of status 200 may hold HTML, or
/// nothing. json() is null then, and carries no error; to learn why the body is no JSON, parse
/// data() again by the constructor of JSON that takes an error slot. The session of this library
/// never gives an error together with a body.
///
/// Responses are made by makeResponse() alone. An application's own class takes the constructors
/// over (`using QVBaseResponse::QVBaseResponse;`) and overrides the steps below, which run in
/// their order once the object is whole. It is made on the session's callback thread, then handed
/// to the main queue, and belongs to the handler from there on. The steps must not throw, except
/// std::bad_alloc: the call then delivers another response, of the same class and with an error of
/// the transport alone, whose steps run, too.
class QUORVELKIT_EXPORT QVBaseResponse : public QVBaseObject {
 public:
  /// What a constructor asks for so that only makeResponse() can call it.
  class Key;

  QVBaseResponse(Key key, std::optional<Data> data, std::shared_ptr<QVBaseRequest> request,
                 std::shared_ptr<const URLResponse> response, std::optional<Error> error,
                 std::shared_ptr<URLSessionDataTask> task);
  /// A response is made of what the transport gave, never of a JSON value.
  explicit QVBaseResponse(std::optional<JSON> json) = delete;
  QVBaseResponse(const QVBaseResponse&) = delete;
  QVBaseResponse& operator=(const QVBaseResponse&) = delete;
  ~QVBaseResponse() override;

  /// The body; present and empty when the answer had none.
  virtual const std::optional<Data>& data() const;
  virtual void setData(std::optional<Data> data);
  /// The request that was sent: the same object.
  virtual const std::shared_ptr<QVBaseRequest>& request() const;
  virtual void setRequest(std::shared_ptr<QVBaseRequest> request);
  /// An HTTPURLResponse when a server answered.
  virtual const std::shared_ptr<const URLResponse>& response() const;
  virtual void setResponse(std::shared_ptr<const URLResponse> response);
  virtual const std::optional<Error>& error() const;
  virtual void setError(std::optional<Error> error);
  virtual const std::shared_ptr<URLSessionDataTask>& task() const;
  virtual void setTask(std::shared_ptr<URLSessionDataTask> task);

  /// First step: does nothing here.
  virtual void processResponse();
  /// Second step: makes the error of a status of 400 or above, whatever error there was.
  virtual void processErrors();
  /// Third step: makes the body the description of the error, unless the call was cancelled or
  /// the body is no text.
  virtual void processTracking();

  /// Whether the call was cancelled: the error has the code URLError::cancelled.
  virtual bool isCancelled() const;
  /// Counts one more attempt on the request and tells whether it may be made: true as long as
  /// retryCount() is below maxNumberOfRetries(). Looks at neither error nor status, and nothing is
  /// sent by it: the application calls the service again with the same request.
  virtual bool shouldRetryRequest();

 protected:
  /// Last step: makes the models of json(). An override calls its base's first.
  virtual void buildModel();
  /// Whether the body parsed as JSON. Tells the JSON text `null` from a body that is no JSON, or
  /// has no bytes: json() is null for all of them.
  bool hasJSONBody() const { return hasJSONBody_; }

 private:
  template <std::derived_from<QVBaseResponse> Response>
  friend std::shared_ptr<Response> makeResponse(std::optional<Data>, std::shared_ptr<QVBaseRequest>,
                                                std::shared_ptr<const URLResponse>,
                                                std::optional<Error>,
                                                std::shared_ptr<URLSessionDataTask>);
  template <class Response>
  friend class detail::CallUnderWay;
  void process();

  std::optional<Data> data_;
  std::shared_ptr<QVBaseRequest> request_;
  std::shared_ptr<const URLResponse> response_;
  std::optional<Error> error_;
  std::shared_ptr<URLSessionDataTask> task_;
  bool hasJSONBody_ = false;
};

class QVBaseResponse::Key {
  template <std::derived_from<QVBaseResponse> Response>
  friend std::shared_ptr<Response> makeResponse(std::optional<Data>, std::shared_ptr<QVBaseRequest>,
                                                std::shared_ptr<const URLResponse>,
                                                std::optional<Error>,
                                                std::shared_ptr<URLSessionDataTask>);
  template <class Response>
  friend class detail::CallUnderWay;
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
