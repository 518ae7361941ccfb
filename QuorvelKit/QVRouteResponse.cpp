// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVRouteResponse.h>

namespace quorvelkit {

QVRouteResponse::~QVRouteResponse() = default;

void QVRouteResponse::buildModel() {
  QVBaseResponse::buildModel();
  const auto& body = json();
  if (body && (hasJSONBody() || body->type() != JSON::Type::null)) route_.emplace(*body);
}

}  // namespace quorvelkit
