// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/curl/EasyHandle_p.h>
#include <QuorvelPlatform/curl/ErrorMap_p.h>
#include <QuorvelPlatform/curl/SocketTable_p.h>
#include <QuorvelPlatform/curl/Transfer_p.h>

#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <new>
#include <string>

namespace quorvelkit {

namespace {

// The fields that every request gets unless it sets them itself. libcurl would format its own
// versions for each request, one character at a time.
struct Field {
  std::string_view name;
  const char* line;
};
constexpr Field userAgent = {"User-Agent", "User-Agent: QuorvelKit/" QUORVELKIT_VERSION};
constexpr Field acceptEncoding = {"Accept-Encoding", "Accept-Encoding: gzip"};
constexpr const char* decodedEncodings = acceptEncoding.line + acceptEncoding.name.size() + 2;

Transfer& transferOf(void* pointer) { return *static_cast<Transfer*>(pointer); }

std::size_t onHeader(char* bytes, std::size_t size, std::size_t count, void* transfer) {
  return transferOf(transfer).didReceiveHeaderLine({bytes, size * count}) ? size * count : 0;
}

std::size_t onBody(char* bytes, std::size_t size, std::size_t count, void* transfer) {
  // The error value differs from every possible size.
  return transferOf(transfer).didReceiveBody({bytes, size * count}) ? size * count
                                                                    : CURL_WRITEFUNC_ERROR;
}

int onProgress(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t uploaded) {
  return transferOf(transfer).didSend(uploaded) ? 0 : 1;
}

int onDebug(CURL* easy, curl_infotype type, char* bytes, std::size_t size, void* transfer) {
  const std::string_view piece(bytes, size);
  if (type == CURLINFO_DATA_IN) transferOf(transfer).didReceiveRawBody(piece);
  if (type == CURLINFO_HEADER_IN && !transferOf(transfer).didReceiveRawHeaderLine(piece)) {
    // libcurl ignores the return value of this callback. The pause keeps it from storing the line,
    // and the progress callback then stops the transfer.
    curl_easy_pause(easy, CURLPAUSE_RECV);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
  }
  return 0;
}

curl_socket_t onOpenSocket(void* sockets, curlsocktype, curl_sockaddr* address) {
  // IPv4 and IPv6 addresses have the port at the same offset.
  const auto* const internet = reinterpret_cast<const sockaddr_in*>(&address->addr);
  try {
    return static_cast<SocketTable*>(sockets)->open(address->family, address->socktype,
                                                    address->protocol, ntohs(internet->sin_port));
  } catch (const std::bad_alloc&) {
    return CURL_SOCKET_BAD;
  }
}

int onCloseSocket(void* sockets, curl_socket_t socket) {
  static_cast<SocketTable*>(sockets)->close(socket);
  return 0;
}

int onRequest(void* transfer, char*, char*, int remotePort, int localPort) {
  return transferOf(transfer).mayUseConnection({localPort, remotePort}) ? CURL_PREREQFUNC_OK
                                                                        : CURL_PREREQFUNC_ABORT;
}

// Returns true for fields that the session sets itself or never sends.
bool isReserved(std::string_view name) {
  constexpr std::array<std::string_view, 6> reserved = {
      "Host", "Content-Length", "Transfer-Encoding", "Connection", "Expect", "Cookie"};
  return equalsIgnoringASCIICase(name.substr(0, 6), "Proxy-") ||
         std::any_of(reserved.begin(), reserved.end(),
                     [&](std::string_view known) { return equalsIgnoringASCIICase(known, name); });
}

// Returns true for methods whose requests may be sent twice (RFC 9110, section 9.2.2).
bool isIdempotent(std::string_view method) {
  constexpr std::array<std::string_view, 6> idempotent = {"GET",    "HEAD",    "PUT",
                                                          "DELETE", "OPTIONS", "TRACE"};
  return std::find(idempotent.begin(), idempotent.end(), method) != idempotent.end();
}

}  // namespace

EasyHandle::EasyHandle(const URLSessionConfiguration& configuration, CURLSH* share,
                       SocketTable& sockets, Transfer& transfer)
    : configuration_(configuration), easy_(curl_easy_init()) {
  if (easy_ == nullptr) throw std::bad_alloc();
  for (const CURLoption option : {CURLOPT_PRIVATE, CURLOPT_HEADERDATA, CURLOPT_WRITEDATA,
                                  CURLOPT_XFERINFODATA, CURLOPT_DEBUGDATA, CURLOPT_PREREQDATA}) {
    curl_easy_setopt(easy_, option, &transfer);
  }
  for (const CURLoption option : {CURLOPT_OPENSOCKETDATA, CURLOPT_CLOSESOCKETDATA}) {
    curl_easy_setopt(easy_, option, &sockets);
  }
  curl_easy_setopt(easy_, CURLOPT_HEADERFUNCTION, onHeader);
  curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, onBody);
  curl_easy_setopt(easy_, CURLOPT_XFERINFOFUNCTION, onProgress);
  curl_easy_setopt(easy_, CURLOPT_DEBUGFUNCTION, onDebug);
  curl_easy_setopt(easy_, CURLOPT_PREREQFUNCTION, onRequest);
  curl_easy_setopt(easy_, CURLOPT_OPENSOCKETFUNCTION, onOpenSocket);
  curl_easy_setopt(easy_, CURLOPT_CLOSESOCKETFUNCTION, onCloseSocket);
  curl_easy_setopt(easy_, CURLOPT_SHARE, share);
  try {
    setText(CURLOPT_COOKIEFILE, "");  // Enables cookies without a file.
    setFixedOptions();
  } catch (const std::bad_alloc&) {
    curl_easy_cleanup(easy_);
    throw;
  }
}

EasyHandle::~EasyHandle() {
  curl_easy_cleanup(easy_);
  curl_slist_free_all(headerFields_);
}

// libcurl copies the text. Throws std::bad_alloc if there is not enough memory for the copy.
void EasyHandle::setText(CURLoption option, const char* text) {
  if (curl_easy_setopt(easy_, option, text) == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
}

void EasyHandle::setFixedOptions() {
  setText(CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy_, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(easy_, CURLOPT_PATH_AS_IS, 1L);
  curl_easy_setopt(easy_, CURLOPT_HTTP09_ALLOWED, 0L);
  setText(CURLOPT_ACCEPT_ENCODING, decodedEncodings);
  // Large enough to receive large bodies with few calls. Below 64 kB, because the C library
  // consolidates the heap each time a larger block is freed.
  curl_easy_setopt(easy_, CURLOPT_BUFFERSIZE, 56L << 10);
  curl_easy_setopt(easy_, CURLOPT_TCP_KEEPALIVE, 1L);
  curl_easy_setopt(easy_, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
  // A cancelled transfer does not block the IO thread until its host name is resolved.
  curl_easy_setopt(easy_, CURLOPT_QUICK_EXIT, 1L);

  curl_easy_setopt(easy_, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(easy_, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(easy_, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  curl_easy_setopt(easy_, CURLOPT_PROXY_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(easy_, CURLOPT_PROXY_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(easy_, CURLOPT_PROXY_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  if (!configuration_.caFile.empty()) {
    for (const CURLoption option : {CURLOPT_CAINFO, CURLOPT_PROXY_CAINFO}) {
      setText(option, configuration_.caFile.c_str());
    }
    for (const CURLoption option : {CURLOPT_CAPATH, CURLOPT_PROXY_CAPATH}) {
      curl_easy_setopt(easy_, option, nullptr);
    }
  }
  setProxy();
  curl_easy_setopt(easy_, CURLOPT_ERRORBUFFER, errorBuffer_.data());
}

// Sets user name and password by a separate option: libcurl's error texts quote the URL of a proxy
// that it cannot use.
void EasyHandle::setProxy() {
  std::string proxy = configuration_.proxy;
  const std::size_t at = proxy.rfind('@');
  if (at != std::string::npos) {
    const std::size_t slashes = proxy.find("//");
    const std::size_t begin = slashes < at ? slashes + 2 : 0;
    setText(CURLOPT_PROXYUSERPWD, proxy.substr(begin, at - begin).c_str());
    proxy.erase(begin, at + 1 - begin);
  }
  // Empty values are set too, because libcurl reads unset ones from the environment.
  setText(CURLOPT_PROXY, proxy.c_str());
  setText(CURLOPT_NOPROXY, "");
}

void EasyHandle::prepare(const URLRequest& request, std::chrono::milliseconds connectTimeout) {
  const bool secure = equalsIgnoringASCIICase(request.url().scheme().value_or(""), "https");
  setText(CURLOPT_URL, request.url().absoluteString().c_str());
  curl_easy_setopt(easy_, CURLOPT_HTTP_VERSION,
                   static_cast<long>(secure ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1));
  // Over plain HTTP, waiting for a connection would delay all requests behind one slow answer.
  curl_easy_setopt(easy_, CURLOPT_PIPEWAIT, secure ? 1L : 0L);
  constexpr std::chrono::milliseconds maximum = std::chrono::days(7);
  curl_easy_setopt(easy_, CURLOPT_CONNECTTIMEOUT_MS,
                   static_cast<long>(std::min(connectTimeout, maximum).count()));
  curl_easy_setopt(easy_, CURLOPT_NOPROGRESS, request.httpBody() ? 0L : 1L);
  setRawCallbacks(false);
  errorBuffer_.front() = '\0';
  // libcurl sends a request again if the server has closed the idle connection. Other requests than
  // idempotent ones therefore use a new connection.
  curl_easy_setopt(easy_, CURLOPT_FRESH_CONNECT, isIdempotent(request.httpMethod()) ? 0L : 1L);
  setMethod(request);
  setHeaderFields(request);
}

void EasyHandle::setMethod(const URLRequest& request) {
  const std::string& method = request.httpMethod();
  const std::string_view body = request.httpBody() ? request.httpBody()->view() : "";
  const bool expectsBody = method == "POST" || method == "PUT" || method == "PATCH";
  const bool isHead = method == "HEAD";
  curl_easy_setopt(easy_, CURLOPT_NOBODY, isHead ? 1L : 0L);
  if (!body.empty() || expectsBody) {
    curl_easy_setopt(easy_, CURLOPT_POST, 1L);
    curl_easy_setopt(easy_, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(easy_, CURLOPT_POSTFIELDS, body.data());
  } else if (!isHead) {
    curl_easy_setopt(easy_, CURLOPT_HTTPGET, 1L);
  }
  const bool isDefaultMethod = method == "GET" || method == "POST" || isHead;
  setText(CURLOPT_CUSTOMREQUEST, isDefaultMethod ? nullptr : method.c_str());
}

void EasyHandle::addHeaderLine(const char* line) {
  curl_slist* const extended = curl_slist_append(headerFields_, line);
  if (extended == nullptr) throw std::bad_alloc();
  headerFields_ = extended;
}

void EasyHandle::setHeaderFields(const URLRequest& request) {
  clear();
  std::string line;
  for (const auto& [name, value] : request.headerFields().all()) {
    if (isReserved(name)) continue;
    // For libcurl, "Name:" removes the field and "Name;" sends it with an empty value.
    const bool isBlank = value.find_first_not_of(" \t") == std::string::npos;
    line.assign(name).append(isBlank ? ";" : ": ").append(isBlank ? "" : value);
    addHeaderLine(line.c_str());
  }
  for (const Field& field : {userAgent, acceptEncoding}) {
    if (!request.value(field.name)) addHeaderLine(field.line);
  }
  const bool hasBody = request.httpBody() && !request.httpBody()->empty();
  if (!request.value("Content-Type") && !(hasBody && request.httpMethod() == "POST")) {
    addHeaderLine("Content-Type:");
  }
  if (hasBody) addHeaderLine("Expect:");
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, headerFields_);
  // libcurl joins these cookies and those of the session into one line.
  if (const auto cookie = request.value("Cookie")) {
    setText(CURLOPT_COOKIE, std::string(*cookie).c_str());
  }
}

void EasyHandle::setRawCallbacks(bool enabled) {
  curl_easy_setopt(easy_, CURLOPT_VERBOSE, enabled ? 1L : 0L);
}

std::string EasyHandle::errorText(CURLcode code) const {
  return networkErrorText(code, errorBuffer_.data(), configuration_.caFile);
}

void EasyHandle::clear() {
  for (const CURLoption option : {CURLOPT_HTTPHEADER, CURLOPT_COOKIE}) {
    curl_easy_setopt(easy_, option, nullptr);
  }
  curl_slist_free_all(headerFields_);
  headerFields_ = nullptr;
}

}  // namespace quorvelkit
