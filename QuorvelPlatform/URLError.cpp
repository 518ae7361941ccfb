// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/URL.h>
#include <QuorvelPlatform/URLError.h>

#include <sstream>
#include <utility>

namespace quorvelkit {

namespace {

std::string_view description(std::int64_t code) {
  switch (code) {
    case URLError::cancelled: return "cancelled";
    case URLError::badURL: return "bad URL";
    case URLError::timedOut: return "The request timed out.";
    case URLError::unsupportedURL: return "unsupported URL";
    case URLError::cannotFindHost: return "The host name was not found.";
    case URLError::cannotConnectToHost: return "No connection to the server could be made.";
    case URLError::networkConnectionLost: return "The connection to the server was lost.";
    case URLError::httpTooManyRedirects: return "too many HTTP redirects";
    case URLError::notConnectedToInternet: return "This device has no network connection.";
    case URLError::badServerResponse: return "The server sent an invalid answer.";
    case URLError::userAuthenticationRequired: return "The server requires credentials.";
    case URLError::cannotDecodeContentData: return "cannot decode content data";
    case URLError::cannotParseResponse: return "cannot parse response";
    case URLError::requestBodyStreamExhausted: return "request body stream exhausted";
    case URLError::fileDoesNotExist: return "The file does not exist.";
    case URLError::noPermissionsToReadFile: return "There is no permission to read the file.";
    case URLError::dataLengthExceedsMaximum: return "resource exceeds maximum size";
    case URLError::secureConnectionFailed: return "No secure connection could be made.";
    case URLError::serverCertificateHasBadDate: return "The server's certificate has expired.";
    case URLError::serverCertificateUntrusted:
      return "The server's certificate is not trusted for this host.";
    case URLError::serverCertificateHasUnknownRoot:
      return "The server's certificate is signed by an unknown authority.";
    case URLError::serverCertificateNotYetValid:
      return "The server's certificate is not valid yet.";
    case URLError::clientCertificateRequired: return "The server requires a client certificate.";
    default: return "unknown error";
  }
}

}  // namespace

Error URLError::make(std::int64_t code, const URL& failingURL, std::string technicalDescription) {
  std::ostringstream urlText;
  urlText << failingURL;
  Error::UserInfo userInfo;
  userInfo.emplace(Error::localizedDescriptionKey, description(code));
  userInfo.emplace(failingURLKey, urlText.str());
  if (!technicalDescription.empty()) {
    userInfo.emplace(Error::technicalDescriptionKey, std::move(technicalDescription));
  }
  return {std::string(domain), code, std::move(userInfo)};
}

Error URLError::make(std::int64_t code) {
  return Error::described(std::string(domain), code, std::string(description(code)));
}

const Error& URLError::outOfMemory() {
  static const NeverDestroyed<Error> error(
      Error::described(std::string(domain), unknown, "There is not enough memory for the answer."));
  return *error;
}

}  // namespace quorvelkit
