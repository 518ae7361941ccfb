// SPDX-License-Identifier: Apache-2.0
#include "Fuzzing.h"
#include "tests/support/TestServer.h"

#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/URLSession.h>

#include <sys/socket.h>

#include <algorithm>
#include <future>
#include <mutex>
#include <thread>

using namespace quorvelkit;
using namespace quorvelkit::fuzz;

namespace {

constexpr std::size_t maximumBodySize = 1U << 20U;

// Answers each request with the same bytes and closes the connection. After three requests it
// answers without a body, to end redirects.
class Server {
 public:
  Server() {
    const auto [socket, address] = test::boundSocket();
    require(::listen(socket, 64) == 0);
    url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    std::thread([this, socket = socket] { serve(socket); }).detach();
  }
  void setBytes(std::string bytes) {
    const std::lock_guard lock(mutex_);
    bytes_ = std::move(bytes);
    left_ = 3;
  }

  std::string url;

 private:
  void serve(int socket) {
    for (;;) {
      test::Connection connection(::accept(socket, nullptr, nullptr), nullptr);
      if (!connection.readHeaderBlock()) continue;
      const std::lock_guard lock(mutex_);
      connection.send(left_-- > 0 ? bytes_ : "HTTP/1.1 204 Last\r\n\r\n");
    }
  }

  std::mutex mutex_;
  std::string bytes_;
  int left_ = 0;
};

std::shared_ptr<URLSession> sessionThrough(const std::string& proxy) {
  URLSessionConfiguration configuration;
  configuration.maximumBodySize = maximumBodySize;
  configuration.proxy = proxy;
  return URLSession::make(configuration);
}

}  // namespace

// Input: the bytes that a server sends. The data task ends once, with a complete response or with
// an error of the session.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static auto& server = *new Server;
  static const auto direct = sessionThrough(""), proxied = sessionThrough(server.url);
  const std::string text = textOf(bytes, size);
  server.setBytes(text);
  // With the server as proxy, a redirect cannot reach another host.
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return asciiLowered(c); });
  const bool mayRedirect = lower.find("location") != std::string::npos;
  std::promise<void> done;
  const auto task =
      (mayRedirect ? proxied : direct)
          ->dataTask(
              URLRequest(*URL::parse(server.url + "/a")),
              [&](const std::optional<Data>& data, const auto& response, const auto& error) {
                require(data.has_value() != error.has_value());
                require((response != nullptr) == data.has_value());
                require(!data || data->size() <= maximumBodySize);
                require(!error || error->domain() == URLError::domain);
                if (const auto* http = dynamic_cast<const HTTPURLResponse*>(response.get())) {
                  require(http->statusCode() >= 100 && http->statusCode() <= 999);
                  for (const auto& [name, value] : http->headerFields().all()) {
                    require(HTTPHeaderFields::isToken(name));
                    require(value.find_first_of(std::string("\r\n\0", 3)) == std::string::npos);
                  }
                }
                done.set_value();
              });
  task->resume();
  done.get_future().wait();
  return 0;
}
