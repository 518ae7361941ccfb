// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLRequest.h>
#include <QuorvelPlatform/URLSessionConfiguration.h>

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <string>

namespace quorvelkit {

class SocketTable;
class Transfer;

/// Owns a libcurl easy handle and sets its options. Used for one exchange after another: the
/// constructor sets the options that never change, prepare() sets all options that depend on the
/// request.
class EasyHandle {
 public:
  /// Connects libcurl's callbacks to the transfer and the sockets. Configuration and share must
  /// exist as long as the handle, the sockets as long as any connection. Throws std::bad_alloc if
  /// there is not enough memory, like all members that set options.
  EasyHandle(const URLSessionConfiguration& configuration, CURLSH* share, SocketTable& sockets,
             Transfer& transfer);
  EasyHandle(const EasyHandle&) = delete;
  EasyHandle& operator=(const EasyHandle&) = delete;
  ~EasyHandle();

  /// Sets the options for a request, whose URL and body must exist until the transfer ends.
  void prepare(const URLRequest& request, std::chrono::milliseconds connectTimeout);
  /// Sets whether the transfer receives raw header lines and raw body bytes, before libcurl stores
  /// or decodes them.
  void setRawCallbacks(bool enabled);
  /// Returns libcurl's description of a failure, without control characters and secrets.
  std::string errorText(CURLcode code) const;
  /// Frees the header fields of the request, which may be secret.
  void clear();

  CURL* get() const { return easy_; }

 private:
  void setFixedOptions();
  void setProxy();
  void setText(CURLoption option, const char* text);
  void addHeaderLine(const char* line);
  void setMethod(const URLRequest& request);
  void setHeaderFields(const URLRequest& request);

  const URLSessionConfiguration& configuration_;
  CURL* const easy_;
  curl_slist* headerFields_ = nullptr;
  std::array<char, CURL_ERROR_SIZE> errorBuffer_{};
};

}  // namespace quorvelkit
