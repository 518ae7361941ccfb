// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVAsioOperation.h>
#include <QuorvelPlatform/EventLoops/AsioEventLoop.h>

#include <utility>

namespace quorvelkit {

/// Waits for the result of a call with a completion token of standalone Asio, such as
/// asio::use_awaitable, asio::use_future or a function:
/// `co_await asyncResult(QVCall(QVNavigation::route, request), asio::use_awaitable)`.
///
/// The signature of the completion handler is `void(QVCallResult<Response>)`. The result contains
/// the error, so no token makes an exception of it.
///
/// Threads: the handler runs on its associated executor, and never inside this call. Without such
/// an executor it runs on the main queue. The result arrives through the main queue, so something
/// must run it, such as an AsioEventLoop or a MainQueueThread. Until then the operation is
/// outstanding work of the executor.
///
/// Cancellation: a signal of any type (terminal, partial, total) calls QVCall::cancel(). The
/// handler then runs with a response that has the error URLError::cancelled. Emit signals on the
/// associated executor, as for every operation of Asio.
///
/// Lifetime: the operation owns the call. If the context of the executor is destroyed first, the
/// handler is destroyed there and does not run; the call continues.
///
/// Cost beside QVCall: about three allocations.
template <class Response, class Token>
auto asyncResult(QVCall<Response> call, Token&& token) {
  return detail::asyncResult<detail::StandaloneAsio>(std::move(call), std::forward<Token>(token));
}

}  // namespace quorvelkit
