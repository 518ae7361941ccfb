// SPDX-License-Identifier: Apache-2.0
#include "sandbox/HTTPServer.h"

#include <httplib.h>

#include <algorithm>
#include <chrono>
#include <thread>

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
// The HTTP library is compiled without ThreadSanitizer, which therefore does not see the guards of
// its function-local statics. This suppresses reports about reads inside the library, but not about
// its locks and our handler.
extern "C" const char* __tsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "called_from_lib:libcpp-httplib.so\n";
}
#endif
#endif

namespace quorvelkit::sandbox {
namespace {

/// One thread for each open connection; larger than the connection limit of clients.
constexpr std::size_t threadCount = 32;
constexpr std::size_t maximumBodySize = 1U << 20U;

/// Leaves out the fields that the library adds: the addresses of the connection.
std::vector<std::pair<std::string, std::string>> receivedFields(const httplib::Request& request) {
  std::vector<std::pair<std::string, std::string>> fields;
  for (const auto& [name, value] : request.headers) {
    if (!name.starts_with("REMOTE_") && !name.starts_with("LOCAL_"))
      fields.emplace_back(name, value);
  }
  return fields;
}

std::string messageOf(int status) {
  switch (status) {
    case 400: return "This is not an HTTP request, or its method is unknown.";
    case 413: return "The body is longer than " + std::to_string(maximumBodySize) + " bytes.";
    case 414: return "The URL is too long.";
    case 500: return "The request could not be answered.";
    default: return "The request was refused with status " + std::to_string(status) + '.';
  }
}

}  // namespace

struct HTTPServer::State {
  httplib::Server server;
  std::thread thread;
  HTTPHandler handler;
  Log log;

  void answer(const httplib::Request& request, httplib::Response& response) const {
    const auto begin = std::chrono::steady_clock::now();
    const HTTPAnswer answer =
        handler({request.method,
                 request.path,
                 {request.params.begin(), request.params.end()},
                 request.body,
                 [&](const std::string& name) { return request.get_header_value(name.c_str()); },
                 request.target,
                 receivedFields(request)});
    response.status = answer.status;
    response.set_header("X-Content-Type-Options", "nosniff");
    if (answer.contentType.starts_with("text/html"))
      response.set_header("Content-Security-Policy", "default-src 'self'");
    response.set_content(answer.body, answer.contentType.c_str());
    if (!log) return;
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begin);
    const std::string path = printable(request.target.substr(0, request.target.find('?')));
    log(printable(request.method) + ' ' + path + ' ' + std::to_string(answer.status) + ", " +
        std::to_string(answer.body.size()) + " bytes in " + std::to_string(time.count()) + " ms");
  }
};

HTTPServer::HTTPServer(HTTPHandler handler, Log log) : state_(std::make_unique<State>()) {
  state_->handler = std::move(handler);
  state_->log = std::move(log);
  httplib::Server& server = state_->server;
  // The server owns the pool.
  server.new_task_queue = [] {
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the library's interface asks for this.
    return new httplib::ThreadPool(threadCount);
  };
  server.set_tcp_nodelay(true);
  // The default options of the library let two servers share a port.
  server.set_socket_options([](socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  server.set_keep_alive_max_count(10'000);
  server.set_keep_alive_timeout(1);
  server.set_payload_max_length(maximumBodySize);
  const auto answer = [state = state_.get()](const httplib::Request& request,
                                             httplib::Response& response) {
    state->answer(request, response);
  };
  server.Get(".*", answer);
  server.Post(".*", answer);
  server.Put(".*", answer);
  server.Patch(".*", answer);
  server.Delete(".*", answer);
  server.Options(".*", answer);
  // The library itself answers what it cannot parse, with a status and no body.
  server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
    if (!response.body.empty()) return;
    const HTTPAnswer failure =
        HTTPAnswer::failure(response.status, response.status, messageOf(response.status));
    response.set_content(failure.body, failure.contentType.c_str());
  });
}

HTTPServer::~HTTPServer() { stop(); }

int HTTPServer::bind(int port) {
  constexpr const char* loopback = "127.0.0.1";
  if (port == 0) return std::max(state_->server.bind_to_any_port(loopback), 0);
  return state_->server.bind_to_port(loopback, port) ? port : 0;
}

void HTTPServer::start() {
  state_->thread = std::thread([state = state_.get()] { state->server.listen_after_bind(); });
}

void HTTPServer::stop() {
  if (!state_->thread.joinable()) return;
  // stop() has no effect before the server runs.
  while (!state_->server.is_running())
    std::this_thread::yield();
  state_->server.stop();
  state_->thread.join();
}

}  // namespace quorvelkit::sandbox
