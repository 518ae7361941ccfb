// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVLoginRequest.h>
#include <QuorvelKit/QVLoginResponse.h>
#include <QuorvelPlatform/Export.h>

#include <memory>
#include <string>

namespace quorvelkit {

/// The backend service, which stores the configuration of the library and has the account that the
/// library logs in to. Applications use this class to select another backend. Thread-safe.
class QUORVELKIT_EXPORT QVBackendless : public QVBaseService {
 public:
  /// Logs in to the service account, unless a token of a previous login is stored: then nothing is
  /// sent, and the handler receives a response without data. Every answer replaces userToken(), by
  /// an empty text if it contains none. Needs no configuration, so it returns the task immediately;
  /// otherwise the contract of QVBaseService holds. If the base URL does not parse, nothing is sent
  /// and the handler never runs.
  static std::shared_ptr<URLSessionDataTask> login(
      std::shared_ptr<QVLoginRequest> request,
      QVCompletionHandler<QVLoginResponse> completionHandler);
  /// Calls login() with a new request.
  static std::shared_ptr<URLSessionDataTask> login(
      QVCompletionHandler<QVLoginResponse> completionHandler);

  /// The token of the last login, at first empty. A token of exactly 36 characters is valid; while
  /// it is stored, login() sends nothing. The token is a secret: the library never prints it.
  static std::string userToken();
  static void setUserToken(std::string userToken);

  /// Scheme, host and port of the backend service, such as "http://127.0.0.1:8080". Default: the
  /// build option QUORVELKIT_BACKEND_BASE_URL. Trailing slashes are removed.
  ///
  /// Set it before the first call, then check isUsableBaseURL(): with a text that does not parse,
  /// no call that needs it is sent, and no handler of these calls runs. Setting it keeps the cached
  /// configuration and the user token of the previous backend, and the token would be sent to the
  /// new one. To remove them, call QVConfiguration::setCachedResponse(nullptr) and
  /// setUserToken("").
  static std::string baseURL();
  static void setBaseURL(std::string baseURL);
  /// Returns true if a base URL parses and has the scheme http or https, a host, no query and no
  /// fragment. Sends nothing. Default argument: the current base URL. With any other base URL login
  /// and configuration fail or are not sent (see setBaseURL).
  static bool isUsableBaseURL(const std::string& baseURL = QVBackendless::baseURL());
};

}  // namespace quorvelkit
