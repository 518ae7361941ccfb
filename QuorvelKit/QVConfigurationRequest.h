// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelPlatform/Export.h>

#include <optional>

namespace quorvelkit {

/// Requests the configuration of the library from the backend service.
class QUORVELKIT_EXPORT QVConfigurationRequest : public QVBaseRequest {
 public:
  QVConfigurationRequest() = default;
  ~QVConfigurationRequest() override;

  std::optional<URL> url() override;
};

}  // namespace quorvelkit
