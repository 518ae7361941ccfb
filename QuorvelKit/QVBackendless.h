// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVLoginRequest.h>
#include <QuorvelKit/QVLoginResponse.h>
#include <QuorvelPlatform/Export.h>

#include <memory>
#include <string>

namespace quorvelkit {

/// The backend service, where the library logs its own account in and keeps its configuration.
/// Applications need it only to point the library at another backend.
class QUORVELKIT_EXPORT QVBackendless : public QVBaseService {
 public:
  /// Logs the service account in, unless a token is held already: then nothing is sent, and the
  /// response, whose members are all absent, still comes later. Every answer sets userToken(), to
  /// nothing when it has none. Needs no configuration, so it returns the task at once; otherwise
  /// the contract of QVBaseService holds.
  static std::shared_ptr<URLSessionDataTask> login(
      std::shared_ptr<QVLoginRequest> request,
      QVCompletionHandler<QVLoginResponse> completionHandler);
  /// The same with a fresh request.
  static std::shared_ptr<URLSessionDataTask> login(
      QVCompletionHandler<QVLoginResponse> completionHandler);

  /// The token of the last login, empty at first. It is held, and spares a login, when it is
  /// exactly 36 characters long. A secret: it is never printed. Safe from any thread.
  static std::string userToken();
  static void setUserToken(std::string userToken);

  /// Scheme, host and port of the backend service, without a "/" at the end; the one that the
  /// library was built with (QUORVELKIT_BACKEND_BASE_URL) unless another was set, say of a staging
  /// server. Set it before the first call: a configuration that was loaded is not loaded again. A
  /// text that makes no URL leaves every call unsent. Safe from any thread.
  static std::string baseURL();
  static void setBaseURL(std::string baseURL);
};

}  // namespace quorvelkit
