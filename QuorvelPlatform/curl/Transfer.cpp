// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/HTTPHead_p.h>
#include <QuorvelPlatform/MemoryPages_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/ErrorMap_p.h>
#include <QuorvelPlatform/curl/RedirectRule_p.h>
#include <QuorvelPlatform/curl/Transfer_p.h>

#include <charconv>
#include <new>
#include <system_error>

namespace quorvelkit {

namespace {

// More header lines than this are an attack: parsing them is quadratic.
constexpr int maximumHeaderLines = 1000;

// The value of a header line when it is of this field.
std::optional<std::string_view> valueOf(std::string_view field, std::string_view line) {
  if (line.size() <= field.size() || line[field.size()] != ':') return std::nullopt;
  if (!equalsIgnoringASCIICase(line.substr(0, field.size()), field)) return std::nullopt;
  line.remove_prefix(field.size() + 1);
  const std::size_t begin = line.find_first_not_of(" \t\r\n");
  if (begin == std::string_view::npos) return "";
  return line.substr(begin, line.find_last_not_of(" \t\r\n") + 1 - begin);
}

}  // namespace

Transfer::Transfer(const URLSessionConfiguration& configuration, CURLSH* share,
                   OpenSockets& sockets)
    : maximumBodySize_(configuration.maximumBodySize),
      sockets_(sockets),
      handle_(configuration, share, sockets, *this) {}

void Transfer::prepare(TransferOwner& owner, const URLRequest& request,
                       std::chrono::milliseconds connectTimeout) {
  clear();
  owner_ = &owner;
  request_ = &request;
  handle_.prepare(request, connectTimeout);
}

void Transfer::clear() {
  handle_.clear();
  connections_ = 0;
  metStrayInput_ = false;
  statusCode_ = 0;
  headIsWhole_ = false;
  lineCount_ = 0;
  headerLines_.clear();
  length_.reset();
  coding_ = Coding::none;
  isChunked_ = false;
  body_ = {};
  bodySize_ = 0;
  sent_ = 0;
  redirect_.reset();
  ownError_ = 0;
  ranOutOfMemory_ = false;
}

bool Transfer::mayUseConnection(const ConnectionPorts& ports) {
  ports_ = ports;
  ++connections_;
  head_ = Head::awaitsStatusLine;
  metStrayInput_ = sockets_.hasStrayInput(ports);
  return !metStrayInput_;
}

// Before 8.2 libcurl adds a folded line to the field that it stored last, even when that belonged
// to the answer before and is freed: until an exchange has a field, its lines are looked at before.
// What libcurl stores is neither the first line of a head nor one that begins with a line end.
void Transfer::watchForFirstField(std::string_view headerLine) {
  if (head_ == Head::hasField) return;
  if (headerLine.starts_with('\r') || headerLine.starts_with('\n')) {
    head_ = Head::awaitsStatusLine;
  } else {
    head_ = head_ == Head::awaitsStatusLine ? Head::awaitsField : Head::hasField;
  }
  handle_.showRaw(head_ == Head::awaitsField);
}

// Blanks between the status line and the first field are a reason to refuse the answer (RFC 9112,
// section 2.2).
bool Transfer::didReceiveRawHeaderLine(std::string_view line) {
  const bool isFolded = line.starts_with(' ') || line.starts_with('\t');
  return !isFolded || head_ != Head::awaitsField || stop(URLError::cannotParseResponse);
}

bool Transfer::didReceiveHeaderLine(std::string_view line) try {
  owner_->didMove();
  watchForFirstField(line);
  const bool isStatusLine = line.starts_with("HTTP/");
  if (isStatusLine && (statusCode_ == 0 || (headIsWhole_ && statusCode_ < 200))) {
    long status = 0;
    curl_easy_getinfo(easy(), CURLINFO_RESPONSE_CODE, &status);
    statusCode_ = static_cast<int>(status);
    headIsWhole_ = false;
    headerLines_.clear();
    length_.reset();
    coding_ = Coding::none;
    isChunked_ = false;
    return true;
  }
  if (!headIsWhole_ && (line == "\r\n" || line == "\n")) return didReceiveHead();
  if (++lineCount_ > maximumHeaderLines) return stop(URLError::cannotParseResponse);
  if (headIsWhole_) return true;  // A trailer.
  headerLines_ += line;
  return takeNote(line);
} catch (const std::bad_alloc&) {
  return runOutOfMemory();
}

// Takes note of the fields that say how the body comes. A length that is not one length is an
// error (RFC 9112, section 6.3): one side would take for the next answer what the other takes for
// the body. The network library believes the last line, or what it can read of it.
bool Transfer::takeNote(std::string_view line) {
  if (const auto text = valueOf("content-length", line)) {
    std::int64_t length = 0;
    const char* const end = text->data() + text->size();
    const auto [stopped, error] = std::from_chars(text->data(), end, length);
    if (stopped != end || text->starts_with('-')) return stop(URLError::cannotParseResponse);
    if (error == std::errc::result_out_of_range) return stop(URLError::dataLengthExceedsMaximum);
    if (error != std::errc() || length_.value_or(length) != length) {
      return stop(URLError::cannotParseResponse);
    }
    length_ = length;
  } else if (const auto coding = valueOf("content-encoding", line)) {
    if (coding->empty() || equalsIgnoringASCIICase(*coding, "identity")) return true;
    const bool isGzip =
        equalsIgnoringASCIICase(*coding, "gzip") || equalsIgnoringASCIICase(*coding, "x-gzip");
    coding_ = isGzip && coding_ == Coding::none ? Coding::gzip : Coding::other;
  } else if (const auto transferCoding = valueOf("transfer-encoding", line)) {
    isChunked_ = true;
    if (!equalsIgnoringASCIICase(*transferCoding, "chunked")) coding_ = Coding::other;
  }
  return true;
}

bool Transfer::didReceiveHead() {
  headIsWhole_ = true;
  if (statusCode_ < 200) return true;
  if (statusCode_ >= 300 && statusCode_ < 400) {
    const HTTPHeaderFields fields = parseHeaderLines(headerLines_);
    redirect_ = redirected(*request_, statusCode_, fields.value("Location"));
  }
  long version = 0;
  curl_easy_getinfo(easy(), CURLINFO_HTTP_VERSION, &version);
  const bool isHTTP1 = version <= CURL_HTTP_VERSION_1_1;
  if (isHTTP1) sockets_.answersInTurn(ports_);
  if (coding_ != Coding::none) {
    gzipTail_.reset(isHTTP1 && isChunked_);
    handle_.showRaw(true);
  }
  return true;
}

bool Transfer::stop(std::int64_t code) {
  ownError_ = code;
  return false;
}

bool Transfer::runOutOfMemory() {
  body_ = {};
  ranOutOfMemory_ = true;
  return stop(URLError::unknown);
}

bool Transfer::didReceiveBody(std::string_view piece) {
  owner_->didMove();
  if (bodySize_ == 0 && !expectBody()) return false;
  bodySize_ += piece.size();
  if (bodySize_ > maximumBodySize_) return stop(URLError::dataLengthExceedsMaximum);
  if (redirect_) return true;
  try {
    if (body_.empty()) makeRoomForBody();
    body_ += piece;
  } catch (const std::bad_alloc&) {
    return runOutOfMemory();
  }
  return true;
}

// Refuses a coding that was not asked for, and holds the length that the server announces against
// the limit, unless decoding will make it another.
bool Transfer::expectBody() {
  if (coding_ == Coding::other) return stop(URLError::cannotDecodeContentData);
  if (announcedBodySize().value_or(0) <= maximumBodySize_) return true;
  return stop(URLError::dataLengthExceedsMaximum);
}

std::optional<std::uint64_t> Transfer::announcedBodySize() const {
  if (coding_ != Coding::none || isChunked_ || !length_) return std::nullopt;
  return static_cast<std::uint64_t>(*length_);
}

// A server may announce more than it sends, so that room is made for a modest size only. Of many
// large bodies under way at once, the memory is mostly new: the C library gives that of those that
// are done with back to the system.
void Transfer::makeRoomForBody() {
  constexpr std::uint64_t large = 128 << 10;
  constexpr std::uint64_t modest = 1 << 20;
  const auto announced = announcedBodySize();
  if (!announced || *announced > modest) return;
  body_.reserve(static_cast<std::size_t>(*announced));
  if (*announced >= large) detail::populatePages(body_.data(), body_.capacity());
}

bool Transfer::didSend(std::int64_t total) {
  if (total != sent_) owner_->didMove();
  sent_ = total;
  return ownError_ == 0;
}

std::string Transfer::technicalText(CURLcode code) const {
  return code == CURLE_OK || ownError_ != 0 ? std::string() : handle_.errorText(code);
}

// libcurl (7.88) keeps the system error of a connection that failed, and counts, up to five, how
// often it sent a request again on another connection.
bool Transfer::canBeUsedAgain(CURLcode code) const {
  long systemError = 0;
  curl_easy_getinfo(easy(), CURLINFO_OS_ERRNO, &systemError);
  return code == CURLE_OK && systemError == 0 && connections_ == 1;
}

std::int64_t Transfer::errorCode(CURLcode code) const {
  if (ownError_ != 0) return ownError_;
  if (code == CURLE_WRITE_ERROR && coding_ != Coding::none) {
    return URLError::cannotDecodeContentData;
  }
  if (code != CURLE_OK) return urlErrorCode(code, easy());
  if (!headIsWhole_ || statusCode_ < 200) return URLError::networkConnectionLost;
  const bool isCut = coding_ == Coding::gzip && !gzipTail_.isComplete(bodySize_);
  const bool isUnread = coding_ == Coding::other && !gzipTail_.isEmpty();
  return isCut || isUnread ? URLError::cannotDecodeContentData : 0;
}

}  // namespace quorvelkit
