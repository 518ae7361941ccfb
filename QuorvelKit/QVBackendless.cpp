// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVProcessValue_p.h>
#include <QuorvelPlatform/UTF8.h>

#include <cstddef>

namespace quorvelkit {

namespace {

constexpr std::size_t userTokenLength = 36;

auto& storedUserToken() {
  static auto& token = *new ProcessValue<std::string>;
  return token;
}

std::string withoutTrailingSlashes(std::string url) {
  while (url.ends_with('/') && !url.ends_with("://"))
    url.pop_back();
  return url;
}

auto& storedBaseURL() {
  static auto& url =
      *new ProcessValue<std::string>(withoutTrailingSlashes(QUORVELKIT_BACKEND_BASE_URL));
  return url;
}

}  // namespace

std::shared_ptr<URLSessionDataTask> QVBackendless::login(
    std::shared_ptr<QVLoginRequest> request,
    QVCompletionHandler<QVLoginResponse> completionHandler) {
  if (request && completionHandler && characterCount(userToken()) == userTokenLength) {
    MainQueue::main().async(
        [handler = std::move(completionHandler),
         response = makeResponse<QVLoginResponse>(std::nullopt, std::move(request))]() mutable {
          handler(std::move(response));
        });
    return nullptr;
  }
  QVCallSteps<QVLoginResponse> steps;
  steps.prepare = [](const auto& proceed) { proceed(); };
  steps.makeHTTPRequest = [request] { return request->loginRequest(); };
  steps.inspectResponse = [](const auto& response) {
    setUserToken(response->userToken().value_or(std::string()));
  };
  return call(std::move(request), std::move(completionHandler), std::move(steps));
}

std::shared_ptr<URLSessionDataTask> QVBackendless::login(
    QVCompletionHandler<QVLoginResponse> completionHandler) {
  return login(std::make_shared<QVLoginRequest>(), std::move(completionHandler));
}

std::string QVBackendless::userToken() { return storedUserToken().get(); }
void QVBackendless::setUserToken(std::string userToken) {
  storedUserToken().set(std::move(userToken));
}

std::string QVBackendless::baseURL() { return storedBaseURL().get(); }
void QVBackendless::setBaseURL(std::string baseURL) {
  storedBaseURL().set(withoutTrailingSlashes(std::move(baseURL)));
}

bool QVBackendless::isUsableBaseURL(const std::string& baseURL) {
  const auto url = URL::parse(baseURL);
  if (!url || url->host().value_or("").empty() || url->query() || url->fragment()) return false;
  std::string scheme(url->scheme().value_or(""));
  for (char& c : scheme)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return scheme == "http" || scheme == "https";
}

}  // namespace quorvelkit
