// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVCandidate.h>
#include <QuorvelPlatform/Export.h>

#include <vector>

namespace quorvelkit {

/// The response to a QVAddressCandidatesRequest.
class QUORVELKIT_EXPORT QVAddressCandidatesResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVAddressCandidatesResponse() override;

  /// The places in the order of the server: the best is first. Also read from the body of an error.
  const std::vector<QVCandidate>& candidates() const { return candidates_; }

 protected:
  void buildModel() override;

 private:
  std::vector<QVCandidate> candidates_;
};

}  // namespace quorvelkit
