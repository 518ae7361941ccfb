// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelPlatform/Export.h>

#include <optional>

namespace quorvelkit {

/// Requests a login to the service account. The parameters are "login" and "password", a secret.
class QUORVELKIT_EXPORT QVLoginRequest : public QVBaseRequest {
 public:
  QVLoginRequest();
  ~QVLoginRequest() override;

  std::optional<URL> url() override;
  /// Returns postRequest() with the three header fields that identify the library.
  virtual std::optional<URLRequest> loginRequest();
};

}  // namespace quorvelkit
