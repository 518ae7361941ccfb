// SPDX-License-Identifier: Apache-2.0
#include "tests/support/TestServer.h"

#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

namespace quorvelkit::test {

std::string withLength(const std::string& head, std::string_view body) {
  return (head + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n").append(body);
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

std::optional<ReceivedRequest> Connection::readHead() {
  std::size_t end = 0;
  while ((end = unread_.find("\r\n\r\n")) == std::string::npos) {
    if (!receiveMore()) return std::nullopt;
  }
  ReceivedRequest request;
  request.head = unread_.substr(0, end + 2);
  unread_.erase(0, end + 4);
  std::string_view rest = request.head;
  const std::string_view first = rest.substr(0, rest.find("\r\n"));
  request.method = first.substr(0, first.find(' '));
  request.target = first.substr(first.find(' ') + 1);
  request.target.erase(request.target.rfind(' '));
  for (rest.remove_prefix(first.size() + 2); !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find("\r\n"));
    const std::size_t colon = line.find(':');
    request.fields.add(line.substr(0, colon), colon + 2 > line.size() ? "" : line.substr(colon + 2),
                       "|");
    rest.remove_prefix(line.size() + 2);
  }
  return request;
}

std::optional<ReceivedRequest> Connection::read() {
  auto request = readHead();
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

}  // namespace quorvelkit::test
