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
  QVCallDifferences<QVConfigurationResponse> differences;
  differences.before = [](const auto& goOn) {
    QVBackendless::login([goOn](const auto& /*response*/) { goOn(); });
  };
  differences.httpRequest = [request] {
    auto made = request->request();
    if (made) made->setValue(QVBackendless::userToken(), "user-token");
    return made;
  };
  // A response that was cached before may hold an application's request: it dies with this
  // function, on the main queue.
  differences.after =
      [former = std::shared_ptr<QVConfigurationResponse>()](const auto& response) mutable {
        former = storedResponse().set(response);
      };
  return call(std::move(request), std::move(completionHandler), std::move(differences));
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
