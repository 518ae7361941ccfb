// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVPoint.h>

#include <cstddef>
#include <utility>

namespace quorvelkit {

QVPoint::QVPoint(JSON json) : QVBaseObject(std::move(json)) {
  if (auto turn = child(QVResponseKey::turn)) {
    constexpr std::size_t overhead = 32;  // The control block and the header of the allocation.
    detail::MemoryBudget::consume(sizeof(QVTurn) + overhead);
    turn_ = std::make_shared<const QVTurn>(*std::move(turn));
  }
}

Coordinate QVPoint::location() const {
  const auto north = latitude();
  const auto east = longitude();
  if (!north || !east) return {};
  return {*north, *east};
}

}  // namespace quorvelkit
