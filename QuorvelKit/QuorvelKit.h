// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// The settings of the library. Safe to use from any threads.
class QUORVELKIT_EXPORT QuorvelKit {
 public:
  /// The token that requests send in the header "AccessToken" if they ask for it
  /// (QVBaseRequest::includeAccessToken). No request of the library does; one of an application's
  /// own may. Absent until it is set.
  static std::optional<std::string> accessToken();
  static void setAccessToken(std::optional<std::string> accessToken);
};

}  // namespace quorvelkit
