// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVRouteResponse.h>

namespace quorvelkit {

QVRouteResponse::~QVRouteResponse() = default;

void QVRouteResponse::buildModel() {
  QVBaseResponse::buildModel();
  if (json() && json()->type() != JSON::Type::null) route_.emplace(*json());
}

}  // namespace quorvelkit
