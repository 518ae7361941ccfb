// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVAsioOperation.h>
#include <QuorvelPlatform/EventLoops/BoostAsioEventLoop.h>

#include <utility>

namespace quorvelkit {

/// Waits for the result of a call with a completion token of Boost.Asio. Otherwise the same as
/// asyncResult() of QVAsioCall.h. Cancellation signals need Boost 1.77 or later.
template <class Response, class Token>
auto boostAsyncResult(QVCall<Response> call, Token&& token) {
  return detail::asyncResult<detail::BoostAsio>(std::move(call), std::forward<Token>(token));
}

}  // namespace quorvelkit
