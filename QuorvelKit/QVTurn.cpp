// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVTurn.h>

#include <utility>

namespace quorvelkit {

QVTurn::QVTurn(JSON json) : QVBaseObject(std::move(json)) {
  if (auto street = child(QVResponseKey::street)) street_.emplace(*std::move(street));
}

QVTurnDirection QVTurn::direction() const {
  return readCase<QVTurnDirection>(QVResponseKey::direction);
}
std::optional<std::string> QVTurn::instruction() const {
  return read<std::string>(QVResponseKey::instruction);
}

}  // namespace quorvelkit
