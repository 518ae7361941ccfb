// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// The library's configuration: where its servers are. Each root is absent when the answer has no
/// such text.
class QUORVELKIT_EXPORT QVConfigurationResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVConfigurationResponse() override;

  std::optional<std::string> quorvelNavigationRootURL() const;
  std::optional<std::string> quorvelFindRootURL() const;
};

}  // namespace quorvelkit
