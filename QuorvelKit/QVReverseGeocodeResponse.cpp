// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVFindWireFormat_p.h>
#include <QuorvelKit/QVReverseGeocodeResponse.h>

namespace quorvelkit {

QVReverseGeocodeResponse::~QVReverseGeocodeResponse() = default;

void QVReverseGeocodeResponse::buildModel() {
  QVBaseResponse::buildModel();
  if (!json()) return;
  location_ = readLocation(*json());
  // QVResponseKey::address is "Address", a member of this object.
  static constexpr KeyView key("address");
  address_.emplace((*json())[key]);
}

}  // namespace quorvelkit
