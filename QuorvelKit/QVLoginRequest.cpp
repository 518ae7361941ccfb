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
  auto made = postRequest();
  if (!made) return std::nullopt;
  made->setValue(backendless::applicationID, "application-id");
  made->setValue(backendless::secretKey, "secret-key");
  made->setValue("REST", "application-type");
  return made;
}

}  // namespace quorvelkit
