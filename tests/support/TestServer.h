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

/// A request as the server received it.
struct ReceivedRequest {
  std::string method, target, headerBlock, body;
  /// The header fields. Several values of one name are joined with "|".
  HTTPHeaderFields fields;

  std::string value(std::string_view name) const {
    return std::string(fields.value(name).value_or("(none)"));
  }
};

/// One connection that a server accepted.
class Connection {
 public:
  Connection(int socket, ssl_st* tls, int count = 1) : number(count), socket_(socket), tls_(tls) {}
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  /// Reads the next request. Absent if the client has closed.
  std::optional<ReceivedRequest> read();
  /// Reads the header block of the next request, but not its body.
  std::optional<ReceivedRequest> readHeaderBlock();
  /// Reads this many bytes. Absent if the client has closed.
  std::optional<std::string> take(std::size_t count);
  /// Sends bytes unchanged. Returns false if the client has closed.
  bool send(std::string_view bytes);
  /// Sends a complete answer with a Content-Length field.
  void answer(int status, std::string_view body = {}, std::string_view headerLines = {});
  /// Sends nothing and waits until the client closes.
  void stall();
  void close();
  /// Closes with a TCP reset.
  void reset();
  bool isOpen() const { return socket_ >= 0; }
  bool finishHandshake();
  /// Ends the wait of a thread that is reading or writing.
  void interrupt();

  /// The number of the connection in its server, from 1.
  const int number;

 private:
  std::ptrdiff_t receive(char* into, std::size_t size);
  /// Receives further bytes into unread_. Returns false if the client has closed.
  bool receiveMore();

  std::mutex mutex_;
  int socket_;
  ssl_st* tls_;
  std::string unread_;
};

/// A server on a free port of the loopback interface. Runs its script for each connection, on a
/// thread per connection.
class TestServer {
 public:
  using Script = std::function<void(Connection&)>;
  using Handler = std::function<void(const ReceivedRequest&, Connection&)>;

  struct TLS {
    std::string certificateFile, keyFile;
    /// The highest TLS version as an OpenSSL constant, or 0 for the newest.
    int highestVersion = 0;
    /// Whether the server selects HTTP/2.
    bool http2 = false;
  };

  explicit TestServer(Script script, std::optional<TLS> tls = std::nullopt);
  explicit TestServer(Handler handler, std::optional<TLS> tls = std::nullopt)
      : TestServer(answering(std::move(handler)), std::move(tls)) {}
  TestServer(const TestServer&) = delete;
  TestServer& operator=(const TestServer&) = delete;
  ~TestServer();

  /// Creates a script that calls the handler for each request.
  static Script answering(Handler handler);

  int port() const { return port_; }
  std::string url(std::string_view path = "/") const;
  /// The number of connections accepted since the start.
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

/// Returns an answer in wire format: the header lines, a Content-Length field and the body.
std::string withLength(const std::string& header, std::string_view body);

/// Returns a socket that is bound to a free port of the loopback interface, and its address.
std::pair<int, sockaddr_in> boundSocket();
/// Returns a port of the loopback interface that refuses connections.
int unusedPort();
/// Returns a port of the loopback interface that does not answer connection attempts.
int deafPort();

}  // namespace quorvelkit::test
