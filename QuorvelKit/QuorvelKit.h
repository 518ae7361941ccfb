// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// The settings of the library. Thread-safe.
class QUORVELKIT_EXPORT QuorvelKit {
 public:
  /// The value of the header "AccessToken", which a request sends if
  /// QVBaseRequest::includeAccessToken is true. No request of the library does. Default: absent.
  static std::optional<std::string> accessToken();
  static void setAccessToken(std::optional<std::string> accessToken);
};

}  // namespace quorvelkit
