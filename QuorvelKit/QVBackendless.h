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
  /// the contract of QVBaseService holds. Without a URL (see setBaseURL) nothing is sent and the
  /// handler never runs.
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

  /// Scheme, host and port of the backend service, say "http://127.0.0.1:8080"; the one that the
  /// library was built with (QUORVELKIT_BACKEND_BASE_URL) unless another was set. Slashes at its
  /// end are dropped, since each path that is put behind it begins with one. Safe from any thread.
  ///
  /// Set it before the first call, and ask isUsableBaseURL(): a text that does not parse leaves
  /// every call that needs it unsent, and their handlers never run. What came from another backend
  /// stays: its configuration until QVConfiguration::setCachedResponse(nullptr), and a token that
  /// it gave, which would be sent to the new one, until setUserToken("").
  static std::string baseURL();
  static void setBaseURL(std::string baseURL);
  /// Whether requests can be sent to a base URL, by its text alone: it parses as a URL with the
  /// scheme http or https and a host, and without query and fragment. Nothing is sent. Without an
  /// argument, of the one that is set. With one that is not usable, login and configuration fail,
  /// or are not sent at all (see setBaseURL). Any thread.
  static bool isUsableBaseURL(const std::string& baseURL = QVBackendless::baseURL());
};

}  // namespace quorvelkit
