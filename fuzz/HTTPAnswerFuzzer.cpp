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

std::mutex mutex;
std::string answer;
int answersLeft = 0;

// Starts a server and returns its URL. It sends the answer to each request and closes the
// connection. If no answers are left, it answers without a body, to end redirects.
std::string startServer() {
  const auto [socket, address] = test::boundSocket();
  require(::listen(socket, 64) == 0);
  std::thread([socket = socket] {
    for (;;) {
      test::Connection connection(::accept(socket, nullptr, nullptr), nullptr);
      if (!connection.readHeaderBlock()) continue;
      const std::lock_guard lock(mutex);
      connection.send(answersLeft-- > 0 ? answer : "HTTP/1.1 204 Last\r\n\r\n");
    }
  }).detach();
  return "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
}

}  // namespace

// Input: the bytes that a server sends. The data task ends once, with a complete response or with
// an error of the session.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const std::string url = startServer();
  static const auto direct = URLSession::make({.maximumBodySize = maximumBodySize}),
                    proxied = URLSession::make({.maximumBodySize = maximumBodySize, .proxy = url});
  const std::string text = textOf(bytes, size);
  {
    const std::lock_guard lock(mutex);
    answer = text;
    answersLeft = 3;
  }
  // With the server as proxy, a redirect cannot reach another host.
  constexpr std::string_view location = "location";
  const bool mayRedirect =
      std::search(text.begin(), text.end(), location.begin(), location.end(),
                  [](char a, char b) { return asciiLowered(a) == b; }) != text.end();
  std::promise<void> done;
  const auto task =
      (mayRedirect ? proxied : direct)
          ->dataTask(
              URLRequest(*URL::parse(url + "/a")),
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
