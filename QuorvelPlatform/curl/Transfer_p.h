// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/TaskResult_p.h>
#include <QuorvelPlatform/curl/EasyHandle_p.h>
#include <QuorvelPlatform/curl/GzipTrailer_p.h>
#include <QuorvelPlatform/curl/SocketTable_p.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// Receives the events of a transfer.
class TransferDelegate {
 public:
  /// Bytes were sent or received.
  virtual void didTransferBytes() = 0;
  virtual void didEnd(CURLcode code) = 0;

 protected:
  ~TransferDelegate() = default;
};

/// Sends one request at a time over one easy handle, collects the answer and checks it against the
/// limits. Used on the IO thread.
class Transfer {
 public:
  Transfer(const URLSessionConfiguration& configuration, CURLSH* share, SocketTable& sockets);

  /// Prepares the transfer for a request, which must exist until the transfer ends.
  void prepare(TransferDelegate& delegate, const URLRequest& request,
               std::chrono::milliseconds connectTimeout);
  /// Frees the data of the request and its answer.
  void clear();

  /// The request that follows a redirect answer. Set when the header block is complete.
  std::optional<URLRequest>& redirect() { return redirect_; }
  /// Returns the URLError code of the result, or 0 if the answer is complete and valid.
  std::int64_t errorCode(CURLcode code) const;
  /// Returns libcurl's description of the failure. Empty if libcurl reported success or if this
  /// class ended the exchange.
  std::string technicalText(CURLcode code) const;
  /// Returns true if this class or libcurl had not enough memory for the answer. libcurl also
  /// returns CURLE_OUT_OF_MEMORY for a header or trailer line that is too long; that case gives
  /// false.
  bool ranOutOfMemory(CURLcode code) const {
    return ranOutOfMemory_ || (errorCode_ == 0 && code == CURLE_OUT_OF_MEMORY &&
                               (statusCode_ == 0 || (headerIsComplete_ && !isChunked_)));
  }
  /// Returns true if the easy handle keeps no state that would change the next exchange.
  bool isReusable(CURLcode code) const;
  /// Returns true if nothing was sent because there was stale input on the connection. The
  /// connection is closed.
  bool foundStaleInput() const { return foundStaleInput_; }
  int statusCode() const { return statusCode_; }
  std::string takeHeaderLines() { return std::move(headerLines_); }
  std::string takeBody() { return std::move(body_); }

  CURL* easy() const { return handle_.get(); }
  TransferDelegate& delegate() { return *delegate_; }

  /// Called by libcurl's callbacks. Those that return false stop the transfer.
  bool mayUseConnection(const ConnectionPorts& ports);
  bool didReceiveHeaderLine(std::string_view line);
  bool didReceiveBody(std::string_view piece);
  bool didReceiveRawHeaderLine(std::string_view line);
  void didReceiveRawBody(std::string_view piece) { gzipTrailer_.append(piece); }
  bool didSend(std::int64_t total);

 private:
  /// The content coding of the body. libcurl also decodes other codings than gzip, but only a gzip
  /// stream allows a check that it is complete.
  enum class Coding { none, gzip, other };

  void trackFirstField(std::string_view headerLine);
  bool readBodyField(std::string_view headerLine);
  bool didReceiveHeaderBlock();
  bool checkBodyStart();
  /// Returns the decoded size of the body if the header fields tell it.
  std::optional<std::uint64_t> announcedBodySize() const;
  void reserveBody();
  /// Stores a URLError code as the result. Returns false, which stops the transfer.
  bool fail(std::int64_t code);
  bool failOutOfMemory();

  const std::size_t maximumBodySize_;
  SocketTable& sockets_;
  EasyHandle handle_;
  TransferDelegate* delegate_ = nullptr;
  const URLRequest* request_ = nullptr;

  ConnectionPorts ports_;
  int connectionCount_ = 0;
  bool foundStaleInput_ = false;

  /// The position in the header block (trackFirstField).
  enum class HeaderState {
    beforeStatusLine,
    beforeFirstField,
    hasField
  } headerState_ = HeaderState::beforeStatusLine;

  // The answer.
  int statusCode_ = 0;
  bool headerIsComplete_ = false;
  int lineCount_ = 0;
  std::string headerLines_;
  std::optional<std::int64_t> length_;
  Coding coding_ = Coding::none;
  bool isChunked_ = false;
  std::string body_;
  std::uint64_t bodySize_ = 0;
  std::int64_t bytesSent_ = 0;
  GzipTrailer gzipTrailer_;
  std::optional<URLRequest> redirect_;
  std::int64_t errorCode_ = 0;
  bool ranOutOfMemory_ = false;
};

}  // namespace quorvelkit
