// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/curl/HTTPDate_p.h>

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

namespace quorvelkit {

namespace {

std::optional<std::string> mimeTypeOf(const HTTPHeaderFields& fields) {
  const auto contentType = fields.value("Content-Type");
  if (!contentType) return std::nullopt;
  std::string mimeType(trimmed(contentType->substr(0, contentType->find(';'))));
  for (char& c : mimeType)
    c = asciiLowered(c);
  if (mimeType.empty()) return std::nullopt;
  return mimeType;
}

// Returns the charset parameter of the content type, without quotes.
std::optional<std::string> textEncodingOf(const HTTPHeaderFields& fields) {
  std::string_view rest = fields.value("Content-Type").value_or("");
  for (auto semicolon = rest.find(';'); semicolon != rest.npos; semicolon = rest.find(';')) {
    rest.remove_prefix(semicolon + 1);
    const std::string_view parameter = trimmed(rest.substr(0, rest.find(';')));
    const auto equals = parameter.find('=');
    if (equals == parameter.npos) continue;
    if (!equalsIgnoringASCIICase(trimmed(parameter.substr(0, equals)), "charset")) continue;
    std::string_view value = trimmed(parameter.substr(equals + 1));
    if (value.size() > 1 && value.front() == '"' && value.back() == '"') {
      value = value.substr(1, value.size() - 2);
    }
    return std::string(value);
  }
  return std::nullopt;
}

std::optional<std::int64_t> numberOf(const HTTPHeaderFields& fields, std::string_view name) {
  const std::string_view text = trimmed(fields.value(name).value_or(""));
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0) return std::nullopt;
  return number;
}

std::optional<std::chrono::sys_seconds> dateOf(const HTTPHeaderFields& fields,
                                               std::string_view name) {
  return parseHTTPDate(std::string(fields.value(name).value_or("")));
}

}  // namespace

HTTPURLResponse::HTTPURLResponse(URL url, int statusCode, HTTPHeaderFields headerFields)
    : URLResponse(std::move(url), mimeTypeOf(headerFields),
                  numberOf(headerFields, "Content-Length"), textEncodingOf(headerFields)),
      statusCode_(statusCode),
      headerFields_(std::move(headerFields)) {}

HTTPURLResponse::~HTTPURLResponse() = default;

std::optional<std::chrono::seconds> HTTPURLResponse::retryAfter() const {
  std::optional<std::chrono::seconds> time;
  if (const auto number = numberOf(headerFields_, "Retry-After")) {
    time = std::chrono::seconds(*number);
  } else if (const auto date = dateOf(headerFields_, "Retry-After")) {
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    time = *date - dateOf(headerFields_, "Date").value_or(now);
  }
  if (!time) return std::nullopt;
  return std::clamp<std::chrono::seconds>(*time, std::chrono::seconds(0), std::chrono::hours(24));
}

std::string_view HTTPURLResponse::localizedString(int statusCode) noexcept {
  switch (statusCode) {
    case 100: return "continue";
    case 101: return "switching protocols";
    case 200: return "no error";
    case 201: return "created";
    case 202: return "accepted";
    case 203: return "non-authoritative information";
    case 204: return "no content";
    case 205: return "reset content";
    case 206: return "partial content";
    case 300: return "multiple choices";
    case 301: return "moved permanently";
    case 302: return "found";
    case 303: return "see other";
    case 304: return "not modified";
    case 305: return "needs proxy";
    case 307: return "temporarily redirected";
    case 400: return "bad request";
    case 401: return "unauthorized";
    case 402: return "payment required";
    case 403: return "forbidden";
    case 404: return "not found";
    case 405: return "method not allowed";
    case 406: return "unacceptable";
    case 407: return "proxy authentication required";
    case 408: return "request timed out";
    case 409: return "conflict";
    case 410: return "no longer exists";
    case 411: return "length required";
    case 412: return "precondition failed";
    case 413: return "request too large";
    case 414: return "requested URL too long";
    case 415: return "unsupported media type";
    case 416: return "requested range not satisfiable";
    case 417: return "expectation failed";
    case 500: return "internal server error";
    case 501: return "unimplemented";
    case 502: return "bad gateway";
    case 503: return "service unavailable";
    case 504: return "gateway timed out";
    case 505: return "unsupported version";
    default: break;
  }
  switch (statusCode / 100) {
    case 1: return "informational";
    case 2: return "success";
    case 3: return "redirected";
    case 4: return "client error";
    default: return "server error";
  }
}

}  // namespace quorvelkit
