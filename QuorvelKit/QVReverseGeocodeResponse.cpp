// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVFindQuery_p.h>
#include <QuorvelKit/QVReverseGeocodeResponse.h>

namespace quorvelkit {

QVReverseGeocodeResponse::~QVReverseGeocodeResponse() = default;

void QVReverseGeocodeResponse::buildModel() {
  QVBaseResponse::buildModel();
  if (!json()) return;
  location_ = locationIn(*json());
  // The member is all lower case; QVResponseKey::address, "Address", is a line inside of it.
  static constexpr KeyView key("address");
  address_.emplace((*json())[key]);
}

}  // namespace quorvelkit
