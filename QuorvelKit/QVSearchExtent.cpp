// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVFindWireFormat_p.h>
#include <QuorvelKit/QVSearchExtent.h>

namespace quorvelkit {

std::string QVSearchExtent::string() const {
  return queryText(southwestCoordinate) + ',' + queryText(northeastCoordinate);
}

}  // namespace quorvelkit
