// SPDX-License-Identifier: Apache-2.0
#include "tests/support/TestServer.h"

#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace quorvelkit::test {

namespace {

int chooseHTTP2(SSL*, const unsigned char** chosen, unsigned char* size, const unsigned char*,
                unsigned, void*) {
  *chosen = reinterpret_cast<const unsigned char*>("h2");
  *size = 2;
  return SSL_TLSEXT_ERR_OK;
}

ssl_ctx_st* makeContext(const TestServer::TLS& tls) {
  SSL_CTX* const context = SSL_CTX_new(TLS_server_method());
  if (SSL_CTX_use_certificate_chain_file(context, tls.certificateFile.c_str()) != 1 ||
      SSL_CTX_use_PrivateKey_file(context, tls.keyFile.c_str(), SSL_FILETYPE_PEM) != 1) {
    throw std::runtime_error("The certificate of the test server could not be read.");
  }
  if (tls.highestVersion != 0) {
    SSL_CTX_set_security_level(context, 0);
    SSL_CTX_set_min_proto_version(context, TLS1_VERSION);
    SSL_CTX_set_max_proto_version(context, tls.highestVersion);
  }
  if (tls.http2) SSL_CTX_set_alpn_select_cb(context, chooseHTTP2, nullptr);
  return context;
}

}  // namespace

std::pair<int, sockaddr_in> boundSocket() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(socket, generic, size) != 0 || ::getsockname(socket, generic, &size) != 0) {
    throw std::runtime_error("No port could be bound.");
  }
  return {socket, address};
}

std::string withLength(const std::string& header, std::string_view body) {
  return (header + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n").append(body);
}

Connection::~Connection() {
  close();
  SSL_free(tls_);
}

bool Connection::finishHandshake() { return tls_ == nullptr || SSL_accept(tls_) == 1; }

std::ptrdiff_t Connection::receive(char* into, std::size_t size) {
  if (!isOpen()) return 0;
  return tls_ != nullptr ? SSL_read(tls_, into, static_cast<int>(size))
                         : ::recv(socket_, into, size, 0);
}

bool Connection::receiveMore() {
  char buffer[16384];
  const auto received = receive(buffer, sizeof buffer);
  if (received > 0) unread_.append(buffer, static_cast<std::size_t>(received));
  return received > 0;
}

bool Connection::send(std::string_view bytes) {
  while (isOpen() && !bytes.empty()) {
    const auto sent = tls_ != nullptr
                          ? SSL_write(tls_, bytes.data(), static_cast<int>(bytes.size()))
                          : ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return isOpen();
}

std::optional<std::string> Connection::take(std::size_t count) {
  while (unread_.size() < count) {
    if (!receiveMore()) return std::nullopt;
  }
  std::string taken = unread_.substr(0, count);
  unread_.erase(0, count);
  return taken;
}

std::optional<ReceivedRequest> Connection::readHeaderBlock() {
  std::size_t end = 0;
  while ((end = unread_.find("\r\n\r\n")) == std::string::npos) {
    if (!receiveMore()) return std::nullopt;
  }
  ReceivedRequest request;
  request.headerBlock = unread_.substr(0, end + 2);
  unread_.erase(0, end + 4);
  std::istringstream lines(request.headerBlock);
  lines >> request.method >> request.target;
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    const std::size_t colon = line.find(':');
    const std::string value = line.substr(std::min(colon + 2, line.size() - 1));
    request.fields.add(line.substr(0, colon), value.substr(0, value.size() - 1), "|");
  }
  return request;
}

std::optional<ReceivedRequest> Connection::read() {
  auto request = readHeaderBlock();
  if (!request) return std::nullopt;
  const std::string length = std::string(request->fields.value("Content-Length").value_or("0"));
  auto body = take(std::strtoull(length.c_str(), nullptr, 10));
  if (!body) return std::nullopt;
  request->body = *std::move(body);
  return request;
}

void Connection::answer(int status, std::string_view body, std::string_view headerLines) {
  const std::string line = "HTTP/1.1 " + std::to_string(status) + " Status\r\n";
  send(withLength(line + std::string(headerLines), body));
}

void Connection::stall() {
  char ignored[4096];
  while (receive(ignored, sizeof ignored) > 0) {
  }
}

void Connection::close() {
  const std::lock_guard lock(mutex_);
  if (socket_ >= 0) ::close(socket_);
  socket_ = -1;
}

void Connection::reset() {
  const linger now{1, 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
  close();
}

void Connection::interrupt() {
  const std::lock_guard lock(mutex_);
  if (socket_ >= 0) ::shutdown(socket_, SHUT_RDWR);
}

TestServer::TestServer(Script script, std::optional<TLS> tls)
    : script_(std::move(script)), secure_(tls.has_value()) {
  if (tls) context_ = makeContext(*tls);
  const auto [socket, address] = boundSocket();
  socket_ = socket;
  port_ = ntohs(address.sin_port);
  ::listen(socket_, 128);
  acceptor_ = std::thread([this] { accept(); });
}

TestServer::~TestServer() {
  ::shutdown(socket_, SHUT_RDWR);
  acceptor_.join();
  {
    const std::lock_guard lock(mutex_);
    for (const auto& connection : connections_)
      connection->interrupt();
  }
  for (std::thread& thread : threads_)
    thread.join();
  ::close(socket_);
  SSL_CTX_free(context_);
}

TestServer::Script TestServer::answering(Handler handler) {
  return [handler = std::move(handler)](Connection& connection) {
    while (const auto request = connection.read())
      handler(*request, connection);
  };
}

std::string TestServer::url(std::string_view path) const {
  return (secure_ ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port_) +
         std::string(path);
}

void TestServer::accept() {
  for (;;) {
    const int socket = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) return;
    const int number = ++connectionCount_, on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    SSL* tls = nullptr;
    if (context_ != nullptr) {
      tls = SSL_new(context_);
      SSL_set_fd(tls, socket);
    }
    const std::lock_guard lock(mutex_);
    connections_.push_back(std::make_shared<Connection>(socket, tls, number));
    threads_.emplace_back([this, connection = connections_.back()] { serve(connection); });
  }
}

// Blocks SIGPIPE: TLS may write to a connection that the client has closed.
void TestServer::serve(const std::shared_ptr<Connection>& connection) {
  sigset_t brokenPipe;
  sigemptyset(&brokenPipe);
  sigaddset(&brokenPipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
  if (connection->finishHandshake()) script_(*connection);
  connection->close();
  const std::lock_guard lock(mutex_);
  connections_.remove(connection);
}

// The socket stays open, so that no other program gets the port.
int unusedPort() { return ntohs(boundSocket().second.sin_port); }

// Fills the queue of waiting connections and never accepts one.
int deafPort() {
  const auto [socket, address] = boundSocket();
  ::listen(socket, 0);
  for (int i = 0; i < 8; ++i) {
    ::connect(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0),
              reinterpret_cast<const sockaddr*>(&address), sizeof address);
  }
  return ntohs(address.sin_port);
}

}  // namespace quorvelkit::test
