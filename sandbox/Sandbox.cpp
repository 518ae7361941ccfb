// SPDX-License-Identifier: Apache-2.0
#include "sandbox/Sandbox.h"

namespace quorvelkit::sandbox {

Sandbox::Sandbox(std::shared_ptr<const MapData> map, HTTPServer::Log log)
    : routes_(map),
      find_(map),
      maps_(std::move(map)),
      server_([this](const HTTPRequest& request) { return answer(request); }, std::move(log)) {}

bool Sandbox::start(int port) {
  // Request handlers read url_, so it is set before the server starts.
  port = server_.bind(port);
  if (port == 0) return false;
  url_ = "http://127.0.0.1:" + std::to_string(port);
  server_.start();
  return true;
}

HTTPAnswer Sandbox::answer(const HTTPRequest& request) {
  auto called = backend_.answer(request, url_);
  if (!called) called = routes_.answer(request);
  if (!called) called = find_.answer(request);
  if (called) {
    page_.addExchange(request, *called);
    return *std::move(called);
  }
  if (auto answer = page_.answer(request, url_)) return *std::move(answer);
  if (auto answer = maps_.answer(request, url_)) return *std::move(answer);
  return HTTPAnswer::failure(404, 404, "This resource does not exist.");
}

}  // namespace quorvelkit::sandbox
