// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVSuggestResponse.h>

namespace quorvelkit {

QVSuggestResponse::~QVSuggestResponse() = default;

void QVSuggestResponse::buildModel() {
  QVBaseResponse::buildModel();
  suggestions_ = children<QVSuggestion>(QVResponseKey::suggestions);
}

}  // namespace quorvelkit
