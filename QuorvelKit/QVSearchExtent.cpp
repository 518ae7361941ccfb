// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVFindQuery_p.h>
#include <QuorvelKit/QVSearchExtent.h>

namespace quorvelkit {

std::string QVSearchExtent::string() const {
  return queryText(southwestCoordinate) + ',' + queryText(northeastCoordinate);
}

}  // namespace quorvelkit
