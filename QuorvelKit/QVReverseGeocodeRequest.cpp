// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVFindWireFormat_p.h>
#include <QuorvelKit/QVReverseGeocodeRequest.h>

namespace quorvelkit {

QVReverseGeocodeRequest::QVReverseGeocodeRequest(Coordinate location) : location_(location) {}

QVReverseGeocodeRequest::~QVReverseGeocodeRequest() = default;

std::optional<URL> QVReverseGeocodeRequest::url() {
  const auto root = findRootURL();
  if (!root) return std::nullopt;
  return resourceURL(*root, "/api/v1/reverseGeocode", ValueMap{{"location", queryText(location_)}});
}

}  // namespace quorvelkit
