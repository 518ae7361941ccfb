// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelPlatform/Export.h>

#include <optional>

namespace quorvelkit {

/// Asks the backend service for the library's configuration file.
class QUORVELKIT_EXPORT QVConfigurationRequest : public QVBaseRequest {
 public:
  QVConfigurationRequest() = default;
  ~QVConfigurationRequest() override;

  std::optional<URL> url() override;
};

}  // namespace quorvelkit
