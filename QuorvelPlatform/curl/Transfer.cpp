// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII.h>
#include <QuorvelPlatform/HTTPHead_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/ErrorMap_p.h>
#include <QuorvelPlatform/curl/RedirectRule_p.h>
#include <QuorvelPlatform/curl/Transfer_p.h>

#include <algorithm>
#include <new>

namespace quorvelkit {

namespace {

// More header lines than this are an attack: parsing them is quadratic.
constexpr int maximumHeaderLines = 1000;

// Whether the lines have a name, given in lower case, anywhere.
bool mentions(std::string_view lines, std::string_view name) {
  return std::search(lines.begin(), lines.end(), name.begin(), name.end(),
                     [](char a, char b) { return asciiLowered(a) == b; }) != lines.end();
}

}  // namespace

Transfer::Transfer(const URLSessionConfiguration& configuration, CURLSH* share)
    : maximumBodySize_(configuration.maximumBodySize), handle_(configuration, share, *this) {}

void Transfer::prepare(TransferOwner& owner, const URLRequest& request,
                       std::chrono::milliseconds connectTimeout) {
  clear();
  owner_ = &owner;
  request_ = &request;
  handle_.prepare(request, connectTimeout);
}

void Transfer::clear() {
  handle_.clear();
  statusCode_ = 0;
  headIsWhole_ = false;
  lineCount_ = 0;
  headerLines_.clear();
  body_ = {};
  bodySize_ = 0;
  sent_ = 0;
  isEncoded_ = false;
  isGzip_ = false;
  redirect_.reset();
  ownError_ = 0;
}

bool Transfer::didReceiveHeaderLine(std::string_view line) {
  owner_->didMove();
  const bool isStatusLine = line.starts_with("HTTP/");
  if (isStatusLine && (statusCode_ == 0 || (headIsWhole_ && statusCode_ < 200))) {
    long status = 0;
    curl_easy_getinfo(easy(), CURLINFO_RESPONSE_CODE, &status);
    statusCode_ = static_cast<int>(status);
    headIsWhole_ = false;
    headerLines_.clear();
    return true;
  }
  if (headIsWhole_) return true;  // A trailer.
  if (line == "\r\n" || line == "\n") return didReceiveHead();
  if (++lineCount_ > maximumHeaderLines) {
    ownError_ = URLError::cannotParseResponse;
    return false;
  }
  headerLines_ += line;
  return true;
}

bool Transfer::didReceiveHead() {
  headIsWhole_ = true;
  if (statusCode_ < 200) return true;
  const bool maybeRedirect = statusCode_ >= 300 && statusCode_ < 400;
  const bool maybeEncoded = mentions(headerLines_, "content-encoding");
  if (!maybeRedirect && !maybeEncoded) return true;

  const HTTPHeaderFields fields = parseHeaderLines(headerLines_);
  redirect_ = redirected(*request_, statusCode_, fields.value("Location"));
  const auto encoding = fields.value("Content-Encoding");
  isEncoded_ = encoding.has_value();
  isGzip_ = encoding && (equalsIgnoringASCIICase(*encoding, "gzip") ||
                         equalsIgnoringASCIICase(*encoding, "x-gzip"));
  if (isGzip_) {
    long version = 0;
    curl_easy_getinfo(easy(), CURLINFO_HTTP_VERSION, &version);
    gzipTail_.reset(version <= CURL_HTTP_VERSION_1_1 && fields.value("Transfer-Encoding"));
    handle_.showRawBody();
  }
  return true;
}

bool Transfer::didReceiveBody(std::string_view piece) {
  owner_->didMove();
  if (bodySize_ == 0 && !expectBody()) return false;
  bodySize_ += piece.size();
  if (bodySize_ > maximumBodySize_) {
    ownError_ = URLError::dataLengthExceedsMaximum;
    return false;
  }
  if (redirect_) return true;
  try {
    body_ += piece;
  } catch (const std::bad_alloc&) {
    ownError_ = URLError::unknown;
    return false;
  }
  return true;
}

// Holds the length that the server announces against the limit, unless decoding will make it
// another, and makes room for a modest one.
bool Transfer::expectBody() {
  constexpr curl_off_t modest = 1 << 20;
  curl_off_t announced = 0;
  curl_easy_getinfo(easy(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
  if (isEncoded_ || announced <= 0) return true;
  if (static_cast<std::uint64_t>(announced) > maximumBodySize_) {
    ownError_ = URLError::dataLengthExceedsMaximum;
    return false;
  }
  if (!redirect_ && announced <= modest) body_.reserve(static_cast<std::size_t>(announced));
  return true;
}

void Transfer::didSend(std::int64_t total) {
  if (total != sent_) owner_->didMove();
  sent_ = total;
}

std::int64_t Transfer::errorCode(CURLcode code) const {
  if (ownError_ != 0) return ownError_;
  if (code == CURLE_WRITE_ERROR && isEncoded_) return URLError::cannotDecodeContentData;
  if (code != CURLE_OK) return urlErrorCode(code, easy());
  if (!headIsWhole_ || statusCode_ < 200) return URLError::networkConnectionLost;
  if (isGzip_ && !gzipTail_.isComplete(bodySize_)) return URLError::cannotDecodeContentData;
  return 0;
}

}  // namespace quorvelkit
