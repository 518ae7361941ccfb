// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVHighway.h>

namespace quorvelkit {

std::optional<std::int64_t> QVHighway::number() const {
  return read<std::int64_t>(QVResponseKey::number);
}
QVHighwayType QVHighway::direction() const {
  return readCase<QVHighwayType>(QVResponseKey::direction);
}

}  // namespace quorvelkit
