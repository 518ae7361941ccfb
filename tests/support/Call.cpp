// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Call.h"

#include "tests/support/TestServer.h"

#include <QuorvelPlatform/HTTPURLResponse.h>

#include <utility>

namespace quorvelkit::test {

int Result::status() const {
  const auto* http = dynamic_cast<const HTTPURLResponse*>(response.get());
  return http == nullptr ? 0 : http->statusCode();
}

std::optional<std::string_view> Result::header(std::string_view name) const {
  const auto* http = dynamic_cast<const HTTPURLResponse*>(response.get());
  return http == nullptr ? std::nullopt : http->value(name);
}

URLRequest requestFor(std::string_view url, std::string_view method,
                      std::optional<std::string> body) {
  URLRequest request(URL::parse(url).value());
  request.setHTTPMethod(std::string(method));
  if (body) request.setHTTPBody(Data(*std::move(body)));
  return request;
}

Call::Call(URLRequest request, const std::shared_ptr<URLSession>& session,
           std::function<void()> inHandler)
    : task(session->dataTask(std::move(request), [result = result_, completions = completions_,
                                                  inHandler = std::move(inHandler)](
                                                     auto data, auto response, auto error) {
        if (inHandler) inHandler();
        ++*completions;
        result.set(
            {std::move(data), std::move(response), std::move(error), std::this_thread::get_id()});
      })) {}

Result send(URLRequest request, const std::shared_ptr<URLSession>& session) {
  const Call call(std::move(request), session);
  call.task->resume();
  return call.result();
}

void repeatUntilTimeout(std::chrono::milliseconds timeout, std::chrono::milliseconds pause,
                        const std::function<void()>& step) {
  const TestServer silent([](Connection& connection) { connection.stall(); });
  URLRequest request = requestFor(silent.url());
  request.setTimeoutInterval(timeout);
  const Call call(request);
  call.task->resume();
  while (!call.isDone(pause))
    step();
}

}  // namespace quorvelkit::test
