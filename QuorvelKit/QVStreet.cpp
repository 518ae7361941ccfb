// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVStreet.h>

#include <utility>

namespace quorvelkit {

QVStreet::QVStreet(JSON json) : QVBaseObject(std::move(json)) {
  if (auto highway = child(QVResponseKey::highway)) highway_.emplace(*std::move(highway));
}

std::optional<std::string> QVStreet::name() const { return read<std::string>(QVResponseKey::name); }
QVStreetFunction QVStreet::function() const {
  return readCase<QVStreetFunction>(QVResponseKey::direction);
}
QVStreetConnection QVStreet::connection() const {
  return readCase<QVStreetConnection>(QVResponseKey::direction);
}
QVStreetDirection QVStreet::direction() const {
  return readCase<QVStreetDirection>(QVResponseKey::direction);
}

}  // namespace quorvelkit
