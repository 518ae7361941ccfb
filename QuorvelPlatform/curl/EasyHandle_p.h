// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URLRequest.h>
#include <QuorvelPlatform/URLSessionConfiguration.h>

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <string>

namespace quorvelkit {

class OpenSockets;
class Transfer;

/// A handle for one transfer after another. Options that never change are set once; prepare() sets
/// every option that a request can change, so that nothing of the request before is left.
class EasyHandle {
 public:
  /// The callbacks find the transfer and the sockets. Configuration and share must outlive the
  /// handle, the sockets all connections.
  EasyHandle(const URLSessionConfiguration& configuration, CURLSH* share, OpenSockets& sockets,
             Transfer& transfer);
  EasyHandle(const EasyHandle&) = delete;
  EasyHandle& operator=(const EasyHandle&) = delete;
  ~EasyHandle();

  /// Makes the handle ready for a request, whose URL and body must stay until the transfer ends.
  void prepare(const URLRequest& request, std::chrono::milliseconds connectTimeout);
  /// Whether header lines and pieces of the body are shown to the transfer as they came, before the
  /// network library does anything with them.
  void showRaw(bool shows);
  /// What the network library says of a failure, printable and without secrets.
  std::string errorText(CURLcode code) const;
  /// Forgets the header fields of the request, which may be secret.
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
