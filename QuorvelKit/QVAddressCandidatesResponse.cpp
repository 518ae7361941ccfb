// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVAddressCandidatesResponse.h>

namespace quorvelkit {

QVAddressCandidatesResponse::~QVAddressCandidatesResponse() = default;

void QVAddressCandidatesResponse::buildModel() {
  QVBaseResponse::buildModel();
  candidates_ = children<QVCandidate>(QVResponseKey::candidates);
}

}  // namespace quorvelkit
