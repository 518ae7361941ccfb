// SPDX-License-Identifier: Apache-2.0
#include "tests/support/TestServer.h"

#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
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
    throw std::runtime_error("No certificate could be read.");
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
    throw std::runtime_error("No port could be had.");
  }
  return {socket, address};
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

// A client that goes while TLS writes to it must not end the test's process.
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

// The socket stays bound, so that no server gets the port after all.
int unusedPort() { return ntohs(boundSocket().second.sin_port); }

// More wait there than it has places for, for good.
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
