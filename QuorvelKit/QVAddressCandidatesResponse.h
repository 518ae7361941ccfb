// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVCandidate.h>
#include <QuorvelPlatform/Export.h>

#include <vector>

namespace quorvelkit {

/// The answer to a QVAddressCandidatesRequest.
class QUORVELKIT_EXPORT QVAddressCandidatesResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVAddressCandidatesResponse() override;

  /// The places in the server's order, the best first; empty when there are none. The body of an
  /// error is read as well.
  const std::vector<QVCandidate>& candidates() const { return candidates_; }

 protected:
  void buildModel() override;

 private:
  std::vector<QVCandidate> candidates_;
};

}  // namespace quorvelkit
