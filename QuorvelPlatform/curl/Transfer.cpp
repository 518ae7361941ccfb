// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/BodyMemory_p.h>
#include <QuorvelPlatform/HTTPHeaderBlock_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/ErrorMap_p.h>
#include <QuorvelPlatform/curl/RedirectRule_p.h>
#include <QuorvelPlatform/curl/Transfer_p.h>

#include <charconv>
#include <new>
#include <system_error>

namespace quorvelkit {

namespace {

// More header lines than this are refused, because the time to parse them grows with the square of
// their number.
constexpr int maximumHeaderLines = 1000;

// Returns the value of a header line if the line has this field name.
std::optional<std::string_view> fieldValue(std::string_view field, std::string_view line) {
  if (line.size() <= field.size() || line[field.size()] != ':') return std::nullopt;
  if (!equalsIgnoringASCIICase(line.substr(0, field.size()), field)) return std::nullopt;
  line.remove_prefix(field.size() + 1);
  const std::size_t begin = line.find_first_not_of(" \t\r\n");
  if (begin == std::string_view::npos) return "";
  return line.substr(begin, line.find_last_not_of(" \t\r\n") + 1 - begin);
}

}  // namespace

Transfer::Transfer(const URLSessionConfiguration& configuration, CURLSH* share,
                   SocketTable& sockets)
    : maximumBodySize_(configuration.maximumBodySize),
      sockets_(sockets),
      handle_(configuration, share, sockets, *this) {}

void Transfer::prepare(TransferDelegate& delegate, const URLRequest& request,
                       std::chrono::milliseconds connectTimeout) {
  clear();
  delegate_ = &delegate;
  request_ = &request;
  handle_.prepare(request, connectTimeout);
}

void Transfer::clear() {
  handle_.clear();
  connectionCount_ = 0;
  foundStaleInput_ = false;
  statusCode_ = 0;
  headerIsComplete_ = false;
  lineCount_ = 0;
  headerLines_.clear();
  length_.reset();
  coding_ = Coding::none;
  isChunked_ = false;
  body_ = {};
  bodySize_ = 0;
  bytesSent_ = 0;
  redirect_.reset();
  errorCode_ = 0;
  ranOutOfMemory_ = false;
}

bool Transfer::mayUseConnection(const ConnectionPorts& ports) {
  ports_ = ports;
  ++connectionCount_;
  headerState_ = HeaderState::beforeStatusLine;
  foundStaleInput_ = sockets_.hasStaleInput(ports);
  return !foundStaleInput_;
}

// libcurl before 8.2 appends a folded line to the field that it stored last, even if that field
// belongs to the previous answer and is freed memory. Until this exchange has a stored field, its
// raw header lines are therefore checked before libcurl stores them. libcurl stores neither the
// first line of a header block nor a line that begins with a line end.
void Transfer::trackFirstField(std::string_view headerLine) {
  if (headerState_ == HeaderState::hasField) return;
  if (headerLine.starts_with('\r') || headerLine.starts_with('\n')) {
    headerState_ = HeaderState::beforeStatusLine;
  } else {
    headerState_ = headerState_ == HeaderState::beforeStatusLine ? HeaderState::beforeFirstField
                                                                 : HeaderState::hasField;
  }
  handle_.setRawCallbacks(headerState_ == HeaderState::beforeFirstField);
}

// A folded line between the status line and the first field makes the answer invalid (RFC 9112,
// section 2.2).
bool Transfer::didReceiveRawHeaderLine(std::string_view line) {
  const bool isFolded = line.starts_with(' ') || line.starts_with('\t');
  return !isFolded || headerState_ != HeaderState::beforeFirstField ||
         fail(URLError::cannotParseResponse);
}

bool Transfer::didReceiveHeaderLine(std::string_view line) try {
  delegate_->didTransferBytes();
  trackFirstField(line);
  const bool isStatusLine = line.starts_with("HTTP/");
  if (isStatusLine && (statusCode_ == 0 || (headerIsComplete_ && statusCode_ < 200))) {
    long status = 0;
    curl_easy_getinfo(easy(), CURLINFO_RESPONSE_CODE, &status);
    statusCode_ = static_cast<int>(status);
    headerIsComplete_ = false;
    headerLines_.clear();
    length_.reset();
    coding_ = Coding::none;
    isChunked_ = false;
    return true;
  }
  if (!headerIsComplete_ && (line == "\r\n" || line == "\n")) return didReceiveHeaderBlock();
  if (++lineCount_ > maximumHeaderLines) return fail(URLError::cannotParseResponse);
  if (headerIsComplete_) return true;  // A trailer field.
  headerLines_ += line;
  return readBodyField(line);
} catch (const std::bad_alloc&) {
  return failOutOfMemory();
}

// Reads the fields that describe the body. Contradicting or invalid lengths are an error (RFC 9112,
// section 6.3): client and server would disagree about where the next answer begins. libcurl would
// use the last length, or the digits at its start.
bool Transfer::readBodyField(std::string_view line) {
  if (const auto text = fieldValue("content-length", line)) {
    std::int64_t length = 0;
    const char* const end = text->data() + text->size();
    const auto [stopped, error] = std::from_chars(text->data(), end, length);
    if (stopped != end || text->starts_with('-')) return fail(URLError::cannotParseResponse);
    if (error == std::errc::result_out_of_range) return fail(URLError::dataLengthExceedsMaximum);
    if (error != std::errc() || length_.value_or(length) != length) {
      return fail(URLError::cannotParseResponse);
    }
    length_ = length;
  } else if (const auto coding = fieldValue("content-encoding", line)) {
    if (coding->empty() || equalsIgnoringASCIICase(*coding, "identity")) return true;
    const bool isGzip =
        equalsIgnoringASCIICase(*coding, "gzip") || equalsIgnoringASCIICase(*coding, "x-gzip");
    coding_ = isGzip && coding_ == Coding::none ? Coding::gzip : Coding::other;
  } else if (const auto transferCoding = fieldValue("transfer-encoding", line)) {
    isChunked_ = true;
    if (!equalsIgnoringASCIICase(*transferCoding, "chunked")) coding_ = Coding::other;
  }
  return true;
}

bool Transfer::didReceiveHeaderBlock() {
  headerIsComplete_ = true;
  if (statusCode_ < 200) return true;
  if (statusCode_ >= 300 && statusCode_ < 400) {
    const HTTPHeaderFields fields = parseHeaderFields(headerLines_);
    redirect_ = redirectedRequest(*request_, statusCode_, fields.value("Location"));
  }
  long version = 0;
  curl_easy_getinfo(easy(), CURLINFO_HTTP_VERSION, &version);
  const bool isHTTP1 = version <= CURL_HTTP_VERSION_1_1;
  if (isHTTP1) sockets_.markAsHTTP1(ports_);
  if (coding_ != Coding::none) {
    gzipTrailer_.reset(isHTTP1 && isChunked_);
    handle_.setRawCallbacks(true);
  }
  return true;
}

bool Transfer::fail(std::int64_t code) {
  errorCode_ = code;
  return false;
}

bool Transfer::failOutOfMemory() {
  body_ = {};
  ranOutOfMemory_ = true;
  return fail(URLError::unknown);
}

bool Transfer::didReceiveBody(std::string_view piece) {
  delegate_->didTransferBytes();
  if (bodySize_ == 0 && !checkBodyStart()) return false;
  bodySize_ += piece.size();
  if (bodySize_ > maximumBodySize_) return fail(URLError::dataLengthExceedsMaximum);
  if (redirect_) return true;
  try {
    if (body_.empty()) reserveBody();
    body_ += piece;
  } catch (const std::bad_alloc&) {
    return failOutOfMemory();
  }
  return true;
}

// Refuses content codings other than gzip, and a body whose announced size is above the limit.
bool Transfer::checkBodyStart() {
  if (coding_ == Coding::other) return fail(URLError::cannotDecodeContentData);
  if (announcedBodySize().value_or(0) <= maximumBodySize_) return true;
  return fail(URLError::dataLengthExceedsMaximum);
}

std::optional<std::uint64_t> Transfer::announcedBodySize() const {
  if (coding_ != Coding::none || isChunked_ || !length_) return std::nullopt;
  return static_cast<std::uint64_t>(*length_);
}

// Reserves at most 1 MiB, because a server may announce more than it sends.
void Transfer::reserveBody() {
  constexpr std::uint64_t maximum = 1 << 20;
  const std::uint64_t announced = announcedBodySize().value_or(0);
  if (announced <= maximum) body_ = BodyMemory::shared().take(announced);
}

bool Transfer::didSend(std::int64_t total) {
  if (total != bytesSent_) delegate_->didTransferBytes();
  bytesSent_ = total;
  return errorCode_ == 0;
}

std::string Transfer::technicalText(CURLcode code) const {
  return code == CURLE_OK || errorCode_ != 0 ? std::string() : handle_.errorText(code);
}

// libcurl 7.88 keeps two values in the handle: the system error of a failed connection, and the
// number of requests that it repeated on another connection (five at most).
bool Transfer::isReusable(CURLcode code) const {
  long systemError = 0;
  curl_easy_getinfo(easy(), CURLINFO_OS_ERRNO, &systemError);
  return code == CURLE_OK && systemError == 0 && connectionCount_ == 1;
}

std::int64_t Transfer::errorCode(CURLcode code) const {
  if (errorCode_ != 0) return errorCode_;
  if (code == CURLE_WRITE_ERROR && coding_ != Coding::none) {
    return URLError::cannotDecodeContentData;
  }
  if (code != CURLE_OK) return urlErrorCode(code, easy());
  if (!headerIsComplete_ || statusCode_ < 200) return URLError::networkConnectionLost;
  const bool isTruncated = coding_ == Coding::gzip && !gzipTrailer_.isComplete(bodySize_);
  const bool isNotDecoded = coding_ == Coding::other && !gzipTrailer_.isEmpty();
  return isTruncated || isNotDecoded ? URLError::cannotDecodeContentData : 0;
}

}  // namespace quorvelkit
