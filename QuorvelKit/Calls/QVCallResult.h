// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVNotSent.h>
#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/FatalError.h>

#include <memory>
#include <optional>
#include <utility>

namespace quorvelkit {

/// The result of a QVCall: either a response, or the reason why there is none. A copy shares the
/// response. Not thread-safe, because responses are not.
template <class Response>
class QVCallResult {
 public:
  /// Makes a result from a response, which must not be null, or from a reason.
  explicit QVCallResult(std::shared_ptr<Response> response) : response_(std::move(response)) {}
  explicit QVCallResult(QVNotSent notSent) : notSent_(std::move(notSent)) {}

  /// The response, with or without an error. Null if the request was not sent.
  const std::shared_ptr<Response>& response() const noexcept { return response_; }
  /// Absent if there is a response.
  const std::optional<QVNotSent>& notSent() const noexcept { return notSent_; }

  /// The error of the response, or that of notSent(). Absent after a success.
  std::optional<Error> error() const { return notSent_ ? notSent_->error() : response_->error(); }
  /// True after a success.
  explicit operator bool() const { return response_ && !response_->error(); }

  /// Accesses the response. Without one this is a programming error and stops the process: call
  /// error() first.
  Response& operator*() const {
    if (!response_) fatalError("The result of a call was used, but its request was not sent.");
    return *response_;
  }
  Response* operator->() const { return &**this; }

 private:
  std::shared_ptr<Response> response_;
  std::optional<QVNotSent> notSent_;
};

}  // namespace quorvelkit
