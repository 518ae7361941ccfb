// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// The configuration of the library: the root URLs of its servers. A root URL is absent if its
/// member is missing or not a string.
class QUORVELKIT_EXPORT QVConfigurationResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVConfigurationResponse() override;

  /// The root URLs of the navigation server and of the find server.
  std::optional<std::string> quorvelNavigationRootURL() const;
  std::optional<std::string> quorvelFindRootURL() const;
};

}  // namespace quorvelkit
