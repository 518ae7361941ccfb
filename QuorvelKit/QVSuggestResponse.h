// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVSuggestion.h>
#include <QuorvelPlatform/Export.h>

#include <vector>

namespace quorvelkit {

/// The response to a QVSuggestRequest.
class QUORVELKIT_EXPORT QVSuggestResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVSuggestResponse() override;

  /// The suggestions in the order of the server.
  const std::vector<QVSuggestion>& suggestions() const { return suggestions_; }

 protected:
  void buildModel() override;

 private:
  std::vector<QVSuggestion> suggestions_;
};

}  // namespace quorvelkit
