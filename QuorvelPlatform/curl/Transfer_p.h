// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Outcome_p.h>
#include <QuorvelPlatform/curl/EasyHandle_p.h>
#include <QuorvelPlatform/curl/GzipTail_p.h>
#include <QuorvelPlatform/curl/OpenSockets_p.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvelkit {

/// Who a transfer is for.
class TransferOwner {
 public:
  /// Bytes went one way or the other.
  virtual void didMove() = 0;
  virtual void didEnd(CURLcode code) = 0;

 protected:
  ~TransferOwner() = default;
};

/// One exchange after another over one handle: takes the answer's head and body, and stops what
/// must not go on.
class Transfer {
 public:
  Transfer(const URLSessionConfiguration& configuration, CURLSH* share, OpenSockets& sockets);

  /// Makes ready for a request, which must stay until the transfer ends.
  void prepare(TransferOwner& owner, const URLRequest& request,
               std::chrono::milliseconds connectTimeout);
  /// Gives up what belongs to the request and its answer.
  void clear();

  /// What the answer leads to instead of being delivered, known as soon as its head is through.
  std::optional<URLRequest>& redirect() { return redirect_; }
  /// The code of URLError for the end of the exchange, 0 for a whole answer.
  std::int64_t errorCode(CURLcode code) const;
  /// What the network library says of such an end; empty when it took the exchange for a whole one
  /// or when the exchange was stopped here.
  std::string technicalText(CURLcode code) const;
  /// Whether there was no memory for the answer, here or in the network library. That gives the
  /// same code for a line of a head or trailer beyond its limits, which is no want of memory.
  bool ranOutOfMemory(CURLcode code) const {
    return ranOutOfMemory_ || (ownError_ == 0 && code == CURLE_OUT_OF_MEMORY &&
                               (statusCode_ == 0 || (headIsWhole_ && !isChunked_)));
  }
  /// Whether nothing is left in the handle that the next exchange would take for its own.
  bool canBeUsedAgain(CURLcode code) const;
  /// Whether nothing was sent, because something came before on the connection that was to be
  /// used, which is closed now.
  bool metStrayInput() const { return metStrayInput_; }
  int statusCode() const { return statusCode_; }
  std::string takeHeaderLines() { return std::move(headerLines_); }
  std::string takeBody() { return std::move(body_); }

  CURL* easy() const { return handle_.get(); }
  TransferOwner& owner() { return *owner_; }

  /// Called by the network library; false stops the transfer.
  bool mayUseConnection(const ConnectionPorts& ports);
  bool didReceiveHeaderLine(std::string_view line);
  bool didReceiveBody(std::string_view piece);
  bool didReceiveRawHeaderLine(std::string_view line);
  void didReceiveRawBody(std::string_view piece) { gzipTail_.take(piece); }
  bool didSend(std::int64_t total);

 private:
  /// How the body is encoded. The network library decodes more than gzip, but tells of nothing
  /// else whether it came to its end.
  enum class Coding { none, gzip, other };

  void watchForFirstField(std::string_view headerLine);
  bool takeNote(std::string_view headerLine);
  bool didReceiveHead();
  bool expectBody();
  /// What the server said of the size of the body as it is delivered.
  std::optional<std::uint64_t> announcedBodySize() const;
  void makeRoomForBody();
  /// Ends the exchange with a code of URLError.
  bool stop(std::int64_t code);
  bool runOutOfMemory();

  const std::size_t maximumBodySize_;
  OpenSockets& sockets_;
  EasyHandle handle_;
  TransferOwner* owner_ = nullptr;
  const URLRequest* request_ = nullptr;

  ConnectionPorts ports_;
  int connections_ = 0;
  bool metStrayInput_ = false;

  /// How far it is, over the present connection, to a field that the network library stores.
  enum class Head { awaitsStatusLine, awaitsField, hasField } head_ = Head::awaitsStatusLine;

  // The answer so far.
  int statusCode_ = 0;
  bool headIsWhole_ = false;
  int lineCount_ = 0;
  std::string headerLines_;
  std::optional<std::int64_t> length_;
  Coding coding_ = Coding::none;
  bool isChunked_ = false;
  std::string body_;
  std::uint64_t bodySize_ = 0;
  std::int64_t sent_ = 0;
  GzipTail gzipTail_;
  std::optional<URLRequest> redirect_;
  std::int64_t ownError_ = 0;
  bool ranOutOfMemory_ = false;
};

}  // namespace quorvelkit
