// SPDX-License-Identifier: Apache-2.0
#pragma once

// Standalone Asio or Boost.Asio under the same names.
#ifdef QUORVELKIT_TESTS_BOOST_ASIO
#include <QuorvelKit/Calls/QVBoostAsioCall.h>

#include <boost/asio.hpp>
namespace net = boost::asio;
#define NET_VERSION BOOST_ASIO_VERSION
#else
#include <QuorvelKit/Calls/QVAsioCall.h>

#include <asio.hpp>
namespace net = asio;
#define NET_VERSION ASIO_VERSION
#endif

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace quorvelkit::test {

#ifdef QUORVELKIT_TESTS_BOOST_ASIO
using NetEventLoop = BoostAsioEventLoop;
template <class Response, class Token>
auto netResult(QVCall<Response> call, Token&& token) {
  return boostAsyncResult(std::move(call), std::forward<Token>(token));
}
#else
using NetEventLoop = AsioEventLoop;
template <class Response, class Token>
auto netResult(QVCall<Response> call, Token&& token) {
  return asyncResult(std::move(call), std::forward<Token>(token));
}
#endif

struct Loop {
#ifdef QUORVELKIT_TESTS_BOOST_ASIO
  static constexpr const char* name = "BoostAsio";
#else
  static constexpr const char* name = "Asio";
#endif
  static constexpr bool nests = true, mayEndFirst = true;
  static constexpr std::optional<bool> passesExceptions = true;
  using Adapter = NetEventLoop;

  std::unique_ptr<Adapter> attach() {
    return std::make_unique<Adapter>(context, NetEventLoop::Work::tracked);
  }
  void later(std::function<void()> function) { net::post(context, std::move(function)); }
  void stop() { isStopped = true; }
  void run() {
    for (isStopped = false; !isStopped;)
      context.run_one();
    isStopped = false;
  }

  net::io_context context;
  net::executor_work_guard<net::io_context::executor_type> keepsRunning{context.get_executor()};
  bool isStopped = false;
};

}  // namespace quorvelkit::test
