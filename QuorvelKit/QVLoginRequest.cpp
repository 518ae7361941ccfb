// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVBackendlessConstants_p.h>
#include <QuorvelKit/QVLoginRequest.h>

#include <string>

namespace quorvelkit {

QVLoginRequest::QVLoginRequest() {
  QVBaseRequest::setParameters(
      ValueMap{{"login", backendless::login}, {"password", backendless::password}});
}

QVLoginRequest::~QVLoginRequest() = default;

std::optional<URL> QVLoginRequest::url() {
  return URL::parse(QVBackendless::baseURL() + "/v1/users/login");
}

std::optional<URLRequest> QVLoginRequest::loginRequest() {
  auto httpRequest = postRequest();
  if (!httpRequest) return std::nullopt;
  httpRequest->setValue(backendless::applicationID, "application-id");
  httpRequest->setValue(backendless::secretKey, "secret-key");
  httpRequest->setValue("REST", "application-type");
  return httpRequest;
}

}  // namespace quorvelkit
