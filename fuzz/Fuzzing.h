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

/// Ends the process, which makes a finding of the input, unless the condition holds.
inline void require(bool condition) {
  if (!condition) std::abort();
}

/// Takes what was read, so that it is read.
inline void touch(const auto&... /*values*/) {}

inline std::string textOf(const std::uint8_t* bytes, std::size_t size) {
  return {reinterpret_cast<const char*>(bytes), size};
}

/// The response made of a body; a status of 400 or above must make an error that says the body.
template <class Response>
std::shared_ptr<Response> answered(const std::string& body, int status) {
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
