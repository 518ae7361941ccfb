// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/UTF8.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace quorvelkit::fuzz {

/// Aborts the process if the condition is false. libFuzzer then reports the input as a finding.
inline void require(bool condition) {
  if (!condition) std::abort();
}

/// Does nothing; its arguments are evaluated.
inline void readAll(const auto&... /*values*/) {}

inline std::string textOf(const std::uint8_t* bytes, std::size_t size) {
  return {reinterpret_cast<const char*>(bytes), size};
}

/// Makes a response from a body. Checks that a status of 400 or above gives an error with the body
/// as its text.
template <class Response>
std::shared_ptr<Response> responseFor(const std::string& body, int status) {
  auto http =
      std::make_shared<HTTPURLResponse>(*URL::parse("http://a.test/"), status, HTTPHeaderFields());
  auto response =
      makeResponse<Response>(Data(body), std::make_shared<QVBaseRequest>(), std::move(http));
  require(response->error().has_value() == (status >= 400) && response->json());
  if (status >= 400) {
    require(response->error()->code() == status);
    require(!isUTF8(body) || response->error()->localizedDescription() == body);
  }
  return response;
}

}  // namespace quorvelkit::fuzz
