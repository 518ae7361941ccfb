// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVConfigurationResponse.h>

namespace quorvelkit {

QVConfigurationResponse::~QVConfigurationResponse() = default;

std::optional<std::string> QVConfigurationResponse::quorvelNavigationRootURL() const {
  return read<std::string>(QVResponseKey::quorvelNavigationRootURL);
}
std::optional<std::string> QVConfigurationResponse::quorvelFindRootURL() const {
  return read<std::string>(QVResponseKey::quorvelFindRootURL);
}

}  // namespace quorvelkit
