// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvelkit {

class URL;

/// The domain and the codes of transport errors, and functions that create such errors.
struct QUORVELKIT_EXPORT URLError {
  /// The domain of transport errors.
  static constexpr std::string_view domain = "QuorvelKit.URLError";
  /// The user info key of the URL that failed. The URL is printed without its user information.
  static constexpr std::string_view failingURLKey = "failingURL";

  /// Also used if there is not enough memory, or if a thread cannot be started.
  static constexpr std::int64_t unknown = -1;
  /// The codes. URLError::make() describes each in English.
  static constexpr std::int64_t cancelled = -999;
  static constexpr std::int64_t badURL = -1000;
  static constexpr std::int64_t timedOut = -1001;
  static constexpr std::int64_t unsupportedURL = -1002;
  static constexpr std::int64_t cannotFindHost = -1003;
  static constexpr std::int64_t cannotConnectToHost = -1004;
  static constexpr std::int64_t networkConnectionLost = -1005;
  static constexpr std::int64_t httpTooManyRedirects = -1007;
  static constexpr std::int64_t notConnectedToInternet = -1009;
  static constexpr std::int64_t badServerResponse = -1011;
  static constexpr std::int64_t userAuthenticationRequired = -1013;
  static constexpr std::int64_t cannotDecodeContentData = -1016;
  static constexpr std::int64_t cannotParseResponse = -1017;
  static constexpr std::int64_t requestBodyStreamExhausted = -1021;
  static constexpr std::int64_t fileDoesNotExist = -1100;
  static constexpr std::int64_t noPermissionsToReadFile = -1102;
  static constexpr std::int64_t dataLengthExceedsMaximum = -1103;
  static constexpr std::int64_t secureConnectionFailed = -1200;
  static constexpr std::int64_t serverCertificateHasBadDate = -1201;
  static constexpr std::int64_t serverCertificateUntrusted = -1202;
  static constexpr std::int64_t serverCertificateHasUnknownRoot = -1203;
  static constexpr std::int64_t serverCertificateNotYetValid = -1204;
  static constexpr std::int64_t clientCertificateRequired = -1206;

  /// Creates an error with the description of the code, the URL that failed and, if not empty, the
  /// text for Error::technicalDescription().
  static Error make(std::int64_t code, const URL& failingURL,
                    std::string technicalDescription = {});
  /// Creates an error of a request whose URL is not known.
  static Error make(std::int64_t code);
  /// Returns the error for an answer that needs more memory than there is. It has the code unknown
  /// and no URL. Allocates memory in the first call only.
  static const Error& outOfMemory();
};

}  // namespace quorvelkit
