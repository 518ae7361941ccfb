// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVFindWireFormat_p.h>
#include <QuorvelKit/QVResponseKey.h>
#include <QuorvelPlatform/DoubleText.h>

namespace quorvelkit {

std::optional<std::string> findRootURL() {
  const auto configuration = QVConfiguration::cachedResponse();
  return configuration ? configuration->quorvelFindRootURL() : std::nullopt;
}

std::string queryText(Coordinate coordinate) {
  return defaultText(coordinate.longitude) + ',' + defaultText(coordinate.latitude);
}

Coordinate readLocation(const JSON& json) {
  const JSON location = json[QVResponseKey::location];
  return {location[QVResponseKey::y].doubleValue(), location[QVResponseKey::x].doubleValue()};
}

}  // namespace quorvelkit
