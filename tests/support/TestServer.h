// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/HTTPHeaderFields.h>

#include <netinet/in.h>

#include <atomic>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

struct ssl_ctx_st;
struct ssl_st;

namespace quorvelkit::test {

/// A request as it came over the wire.
struct ReceivedRequest {
  std::string method, target, head, body;
  /// The fields; those of one name are joined with "|", so that a second line shows.
  HTTPHeaderFields fields;

  std::string value(std::string_view name) const {
    return std::string(fields.value(name).value_or("(none)"));
  }
};

/// One accepted connection: what a server may do to a client.
class Connection {
 public:
  Connection(int socket, ssl_st* tls, int count = 1) : number(count), socket_(socket), tls_(tls) {}
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  /// The next request; absent once the client has closed.
  std::optional<ReceivedRequest> read();
  /// Only the head of the next request; its body stays unread.
  std::optional<ReceivedRequest> readHead();
  /// The next bytes, so many; absent once the client has closed.
  std::optional<std::string> take(std::size_t count);
  /// Sends bytes as they are; false once the client has closed.
  bool send(std::string_view bytes);
  /// Sends a whole answer with its length.
  void answer(int status, std::string_view body = {}, std::string_view headerLines = {});
  /// Stands still until the client closes.
  void stall();
  void close();
  /// Closes with a reset in place of an orderly end.
  void reset();
  bool isOpen() const { return socket_ >= 0; }
  bool finishHandshake();
  /// Wakes a thread that is reading or writing.
  void interrupt();

  /// Counted from 1 in each server.
  const int number;

 private:
  std::ptrdiff_t receive(char* into, std::size_t size);
  /// Receives some more of what is unread; false once the client has closed.
  bool receiveMore();

  std::mutex mutex_;
  int socket_;
  ssl_st* tls_;
  std::string unread_;
};

/// A server on the loopback interface, for HTTP or whatever its script does to a connection. Each
/// connection has a thread.
class TestServer {
 public:
  using Script = std::function<void(Connection&)>;
  using Handler = std::function<void(const ReceivedRequest&, Connection&)>;

  struct TLS {
    std::string certificateFile, keyFile;
    /// The highest version, as OpenSSL numbers them; 0 for the newest.
    int highestVersion = 0;
    /// Whether HTTP/2 is what the server wants to speak.
    bool http2 = false;
  };

  explicit TestServer(Script script, std::optional<TLS> tls = std::nullopt);
  explicit TestServer(Handler handler, std::optional<TLS> tls = std::nullopt)
      : TestServer(answering(std::move(handler)), std::move(tls)) {}
  TestServer(const TestServer&) = delete;
  TestServer& operator=(const TestServer&) = delete;
  ~TestServer();

  /// A script that hands one request after another to a handler.
  static Script answering(Handler handler);

  int port() const { return port_; }
  std::string url(std::string_view path = "/") const;
  /// What was accepted since the start.
  int connectionCount() const { return connectionCount_; }

 private:
  void accept();
  void serve(const std::shared_ptr<Connection>& connection);

  const Script script_;
  const bool secure_;
  ssl_ctx_st* context_ = nullptr;
  int socket_ = -1;
  int port_ = 0;
  std::atomic<int> connectionCount_ = 0;
  std::mutex mutex_;
  std::list<std::shared_ptr<Connection>> connections_;
  std::vector<std::thread> threads_;
  std::thread acceptor_;
};

/// The head of an answer, the length of the body, and the body, as they stand on the wire.
std::string withLength(const std::string& head, std::string_view body);

/// A socket bound to a free port of the loopback interface, and its address.
std::pair<int, sockaddr_in> boundSocket();
/// A port of the loopback interface on which nothing listens.
int unusedPort();
/// A port of the loopback interface that takes no notice of who wants to connect.
int deafPort();

}  // namespace quorvelkit::test
