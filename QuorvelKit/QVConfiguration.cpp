// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVProcessValue_p.h>

namespace quorvelkit {

namespace {

auto& storedResponse() {
  static auto& response = *new ProcessValue<std::shared_ptr<QVConfigurationResponse>>;
  return response;
}

}  // namespace

std::shared_ptr<URLSessionDataTask> QVConfiguration::get(
    std::shared_ptr<QVConfigurationRequest> request,
    QVCompletionHandler<QVConfigurationResponse> completionHandler) {
  if (request && completionHandler) {
    if (auto cached = cachedResponse()) {
      completionHandler(std::move(cached));
      return nullptr;
    }
  }
  return load(std::move(request), std::move(completionHandler), [](const auto& proceed) {
    QVBackendless::login([proceed](const auto& /*response*/) { proceed(); });
  });
}

// Requests the configuration, also if one is cached.
std::shared_ptr<URLSessionDataTask> QVConfiguration::load(
    std::shared_ptr<QVConfigurationRequest> request,
    QVCompletionHandler<QVConfigurationResponse> completionHandler,
    std::function<void(std::function<void()>)> login) {
  QVCallSteps<QVConfigurationResponse> steps;
  steps.prepare = std::move(login);
  steps.makeHTTPRequest = [request] {
    auto httpRequest = request->request();
    if (httpRequest) httpRequest->setValue(QVBackendless::userToken(), "user-token");
    return httpRequest;
  };
  // The previous response may own a request of the application. This function owns the previous
  // response, because it is destroyed on the main queue.
  steps.inspectResponse =
      [previous = std::shared_ptr<QVConfigurationResponse>()](const auto& response) mutable {
        // Without a task nothing was sent: the next call tries again.
        if (response->task()) previous = storedResponse().set(response);
      };
  return call(std::move(request), std::move(completionHandler), std::move(steps));
}

std::shared_ptr<URLSessionDataTask> QVConfiguration::get(
    QVCompletionHandler<QVConfigurationResponse> completionHandler) {
  return get(std::make_shared<QVConfigurationRequest>(), std::move(completionHandler));
}

std::shared_ptr<QVConfigurationResponse> QVConfiguration::cachedResponse() {
  return storedResponse().get();
}

void QVConfiguration::setCachedResponse(std::shared_ptr<QVConfigurationResponse> cachedResponse) {
  storedResponse().set(std::move(cachedResponse));
}

}  // namespace quorvelkit
