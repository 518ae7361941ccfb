// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QuorvelKit.h>

#include <functional>
#include <memory>
#include <string>

/// Changes to another backend: removes what belongs to the previous one, logs in and reports the
/// root URL of the navigation server. Returns false if the address cannot be used.
inline bool changeBackend(const std::string& address,
                          std::function<void(const std::string&)> report) {
  using namespace quorvelkit;
  if (!QVBackendless::isUsableBaseURL(address)) return false;
  QuorvelKit::setAccessToken(std::nullopt);
  QVBackendless::setUserToken("");
  QVConfiguration::setCachedResponse(nullptr);
  QVBackendless::setBaseURL(address);
  const auto request = std::make_shared<QVLoginRequest>();
  QVBackendless::login(request, [report](const std::shared_ptr<QVLoginResponse>& login) {
    if (login->error()) return report("No login: " + login->message().value_or(""));
    QVConfiguration::get(std::make_shared<QVConfigurationRequest>(),
                         [report](const std::shared_ptr<QVConfigurationResponse>& configuration) {
                           report(configuration->quorvelNavigationRootURL().value_or("none"));
                         });
  });
  return true;
}
