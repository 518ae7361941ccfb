// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVPoint.h>

#include <utility>

namespace quorvelkit {

QVPoint::QVPoint(JSON json) : QVBaseObject(std::move(json)) {
  if (auto turn = child(QVResponseKey::turn))
    turn_ = std::make_shared<const QVTurn>(*std::move(turn));
}

std::optional<std::string> QVPoint::notify() const {
  return read<std::string>(QVResponseKey::notify);
}
std::optional<double> QVPoint::travelTimeInSeconds() const {
  return read<double>(QVResponseKey::travelTimeInSeconds);
}
std::optional<double> QVPoint::distanceInMiles() const {
  return read<double>(QVResponseKey::distanceInMiles);
}
std::optional<double> QVPoint::latitude() const { return read<double>(QVResponseKey::latitude); }
std::optional<double> QVPoint::longitude() const { return read<double>(QVResponseKey::longitude); }

Coordinate QVPoint::location() const {
  const auto itsLatitude = latitude();
  const auto itsLongitude = longitude();
  if (!itsLatitude || !itsLongitude) return {};
  return {*itsLatitude, *itsLongitude};
}

std::optional<std::vector<std::string>> QVPoint::say() const {
  return read<std::vector<std::string>>(QVResponseKey::say);
}
std::optional<std::int64_t> QVPoint::edge() const {
  return read<std::int64_t>(QVResponseKey::edge);
}
std::optional<std::int64_t> QVPoint::node() const {
  return read<std::int64_t>(QVResponseKey::node);
}

}  // namespace quorvelkit
