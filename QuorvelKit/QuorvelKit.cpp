// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVProcessValue_p.h>
#include <QuorvelKit/QuorvelKit.h>

#include <utility>

namespace quorvelkit {

namespace {

auto& storedAccessToken() {
  static auto& token = *new ProcessValue<std::optional<std::string>>;
  return token;
}

}  // namespace

std::optional<std::string> QuorvelKit::accessToken() { return storedAccessToken().get(); }

void QuorvelKit::setAccessToken(std::optional<std::string> accessToken) {
  storedAccessToken().set(std::move(accessToken));
}

}  // namespace quorvelkit
