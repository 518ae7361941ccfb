// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfigurationRequest.h>

namespace quorvelkit {

QVConfigurationRequest::~QVConfigurationRequest() = default;

std::optional<URL> QVConfigurationRequest::url() {
  return URL::parse(
      QVBackendless::baseURL() +
      "/5E2C9F14-7A03-41BD-C8E6-0F93D27A61B5/v1/files/configuration/configuration.json");
}

}  // namespace quorvelkit
