// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVClassName_p.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/UTF8.h>

namespace quorvelkit {

namespace {

constexpr int firstErrorStatus = 400;

bool isCancellation(const Error& error) { return error.code() == URLError::cancelled; }

}  // namespace

QVBaseResponse::QVBaseResponse(Key /*key*/, std::optional<Data> data,
                               std::shared_ptr<QVBaseRequest> request,
                               std::shared_ptr<const URLResponse> response,
                               std::optional<Error> error, std::shared_ptr<URLSessionDataTask> task)
    : QVBaseObject(std::nullopt),
      data_(std::move(data)),
      request_(std::move(request)),
      response_(std::move(response)),
      error_(std::move(error)),
      task_(std::move(task)) {
  if (!request_) fatalError("a response needs a request");
  if (!data_) return;
  std::optional<Error> failure;
  QVBaseObject::setJSON(JSON(*data_, JSONReadingOptions::allowFragments, &failure));
  hasJSONBody_ = !failure;
}

QVBaseResponse::~QVBaseResponse() = default;

void QVBaseResponse::process() {
  processResponse();
  processErrors();
  processTracking();
  buildModel();
}

const std::optional<Data>& QVBaseResponse::data() const { return data_; }
void QVBaseResponse::setData(std::optional<Data> data) { data_ = std::move(data); }

const std::shared_ptr<QVBaseRequest>& QVBaseResponse::request() const { return request_; }
void QVBaseResponse::setRequest(std::shared_ptr<QVBaseRequest> request) {
  request_ = std::move(request);
}

const std::shared_ptr<const URLResponse>& QVBaseResponse::response() const { return response_; }
void QVBaseResponse::setResponse(std::shared_ptr<const URLResponse> response) {
  response_ = std::move(response);
}

const std::optional<Error>& QVBaseResponse::error() const { return error_; }
void QVBaseResponse::setError(std::optional<Error> error) { error_ = std::move(error); }

const std::shared_ptr<URLSessionDataTask>& QVBaseResponse::task() const { return task_; }
void QVBaseResponse::setTask(std::shared_ptr<URLSessionDataTask> task) { task_ = std::move(task); }

void QVBaseResponse::processResponse() {}

void QVBaseResponse::processErrors() {
  const auto* const http = dynamic_cast<const HTTPURLResponse*>(response().get());
  if (http == nullptr || http->statusCode() < firstErrorStatus) return;
  setError(Error::described(qualifiedClassName(typeid(*this)), http->statusCode(),
                            std::string(HTTPURLResponse::localizedString(http->statusCode()))));
}

void QVBaseResponse::processTracking() {
  if (!error() || isCancellation(*error())) return;
  const auto& body = data();
  if (!body || !isUTF8(body->view())) return;
  setError(Error::described(error()->domain(), error()->code(), std::string(body->view())));
}

void QVBaseResponse::buildModel() {}

bool QVBaseResponse::isCancelled() const { return error() && isCancellation(*error()); }

bool QVBaseResponse::shouldRetryRequest() {
  const auto& sentRequest = request();
  if (!sentRequest) return false;
  const auto retryCount = sentRequest->retryCount();
  if (retryCount >= sentRequest->maxNumberOfRetries()) return false;
  sentRequest->setRetryCount(retryCount + 1);
  return true;
}

}  // namespace quorvelkit
