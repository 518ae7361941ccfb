// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVRoute.h>

#include <utility>

namespace quorvelkit {

QVRoute::QVRoute(JSON json)
    : QVBaseObject(std::move(json)),
      points_(
          std::make_shared<const std::vector<QVPoint>>(children<QVPoint>(QVResponseKey::points))) {}

std::optional<double> QVRoute::totalDistanceInMiles() const {
  return read<double>(QVResponseKey::totalDistanceInMiles);
}
std::optional<double> QVRoute::totalDurationInMinutes() const {
  return read<double>(QVResponseKey::totalDurationInMinutes);
}
std::optional<std::int64_t> QVRoute::startNode() const {
  return read<std::int64_t>(QVResponseKey::startNode);
}
std::optional<std::int64_t> QVRoute::endNode() const {
  return read<std::int64_t>(QVResponseKey::endNode);
}

}  // namespace quorvelkit
