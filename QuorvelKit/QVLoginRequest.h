// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelPlatform/Export.h>

#include <optional>

namespace quorvelkit {

/// Logs the library's service account in; its parameters are the account's "login" and "password".
class QUORVELKIT_EXPORT QVLoginRequest : public QVBaseRequest {
 public:
  QVLoginRequest();
  ~QVLoginRequest() override;

  std::optional<URL> url() override;
  /// postRequest() with the three headers that name the application to the backend service.
  virtual std::optional<URLRequest> loginRequest();
};

}  // namespace quorvelkit
