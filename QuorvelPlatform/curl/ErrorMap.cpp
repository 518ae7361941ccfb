// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/UTF8.h>
#include <QuorvelPlatform/curl/ErrorMap_p.h>

#include <ifaddrs.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace quorvelkit {

namespace {

long longInfo(CURL* easy, CURLINFO info) {
  long number = 0;
  curl_easy_getinfo(easy, info, &number);
  return number;
}

bool wasConnected(CURL* easy) {
  curl_off_t microseconds = 0;
  curl_easy_getinfo(easy, CURLINFO_CONNECT_TIME_T, &microseconds);
  return microseconds > 0;
}

// Returns true if an interface other than the loopback interface is up.
bool hasNetwork() {
  ifaddrs* interfaces = nullptr;
  if (getifaddrs(&interfaces) != 0) return true;
  bool found = false;
  for (const ifaddrs* entry = interfaces; entry != nullptr; entry = entry->ifa_next) {
    const bool hasAddress = entry->ifa_addr != nullptr && (entry->ifa_addr->sa_family == AF_INET ||
                                                           entry->ifa_addr->sa_family == AF_INET6);
    found = found || (hasAddress && (entry->ifa_flags & IFF_UP) != 0 &&
                      (entry->ifa_flags & IFF_LOOPBACK) == 0);
  }
  freeifaddrs(interfaces);
  return found;
}

std::int64_t connectionError(CURL* easy) {
  switch (longInfo(easy, CURLINFO_OS_ERRNO)) {
    case ETIMEDOUT: return URLError::timedOut;
    case ENETUNREACH:
    case ENETDOWN: return URLError::notConnectedToInternet;
    default: return URLError::cannotConnectToHost;
  }
}

std::int64_t receiveError(CURL* easy) {
  const bool isProtocolError =
      longInfo(easy, CURLINFO_OS_ERRNO) == 0 && longInfo(easy, CURLINFO_RESPONSE_CODE) != 0;
  return isProtocolError ? URLError::cannotParseResponse : URLError::networkConnectionLost;
}

// The numbers are OpenSSL's X509_V_ERR codes.
std::int64_t verificationError(CURL* easy) {
  switch (longInfo(easy, CURLINFO_SSL_VERIFYRESULT)) {
    case 9: return URLError::serverCertificateNotYetValid;
    case 10: return URLError::serverCertificateHasBadDate;
    case 19:
    case 20:
    case 21: return URLError::serverCertificateHasUnknownRoot;
    default: return URLError::serverCertificateUntrusted;
  }
}

// libcurl has the same error text for a missing file and for a file that is not PEM.
std::string unusableFileReason(const std::string& caFile) {
  const std::ifstream file(caFile);
  if (file) return "The file holds no certificate in PEM form.";
  return std::generic_category().message(errno);
}

}  // namespace

std::int64_t urlErrorCode(CURLcode code, CURL* easy) {
  switch (code) {
    case CURLE_UNSUPPORTED_PROTOCOL:
      return wasConnected(easy) ? URLError::cannotParseResponse : URLError::unsupportedURL;
    case CURLE_URL_MALFORMAT: return URLError::badURL;
    case CURLE_COULDNT_RESOLVE_PROXY: return URLError::cannotFindHost;
    case CURLE_COULDNT_RESOLVE_HOST:
      return hasNetwork() ? URLError::cannotFindHost : URLError::notConnectedToInternet;
    case CURLE_COULDNT_CONNECT: return connectionError(easy);
    case CURLE_PROXY:
    case CURLE_NO_CONNECTION_AVAILABLE: return URLError::cannotConnectToHost;
    case CURLE_INTERFACE_FAILED: return URLError::notConnectedToInternet;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_CHUNK_FAILED: return URLError::cannotParseResponse;
    case CURLE_OUT_OF_MEMORY:
      // libcurl also returns this code for a header line that is too long.
      return longInfo(easy, CURLINFO_RESPONSE_CODE) != 0 ? URLError::cannotParseResponse
                                                         : URLError::unknown;
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
    case CURLE_HTTP3:
    case CURLE_QUIC_CONNECT_ERROR: return URLError::networkConnectionLost;
    case CURLE_RECV_ERROR: return receiveError(easy);
    case CURLE_READ_ERROR:
    case CURLE_SEND_FAIL_REWIND: return URLError::requestBodyStreamExhausted;
    case CURLE_OPERATION_TIMEDOUT: return URLError::timedOut;
    case CURLE_TOO_MANY_REDIRECTS: return URLError::httpTooManyRedirects;
    case CURLE_BAD_CONTENT_ENCODING: return URLError::cannotDecodeContentData;
    case CURLE_FILESIZE_EXCEEDED: return URLError::dataLengthExceedsMaximum;
    case CURLE_LOGIN_DENIED:
    case CURLE_AUTH_ERROR: return URLError::userAuthenticationRequired;
    case CURLE_PEER_FAILED_VERIFICATION: return verificationError(easy);
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
    case CURLE_SSL_INVALIDCERTSTATUS: return URLError::serverCertificateUntrusted;
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CLIENTCERT: return URLError::clientCertificateRequired;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_ENGINE_NOTFOUND:
    case CURLE_SSL_ENGINE_SETFAILED:
    case CURLE_SSL_CIPHER:
    case CURLE_USE_SSL_FAILED:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_SHUTDOWN_FAILED: return URLError::secureConnectionFailed;
    default: return URLError::unknown;
  }
}

std::string networkErrorText(CURLcode code, std::string_view errorBuffer,
                             const std::string& caFile) {
  std::string text(errorBuffer.empty() ? curl_easy_strerror(code) : errorBuffer);
  if (code == CURLE_SSL_CACERT_BADFILE && !caFile.empty())
    text += "; " + unusableFileReason(caFile);
  const bool isText = isUTF8(text);
  std::replace_if(
      text.begin(), text.end(),
      [&](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < ' ' || byte == 0x7F || (byte > 0x7F && !isText);
      },
      ' ');
  return text;
}

}  // namespace quorvelkit
