// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVFindWireFormat_p.h>
#include <QuorvelKit/QVSuggestRequest.h>

namespace quorvelkit {

QVSuggestRequest::QVSuggestRequest(std::string text, Coordinate location,
                                   std::optional<QVSearchExtent> searchExtent)
    : text_(std::move(text)), location_(location), searchExtent_(searchExtent) {}

QVSuggestRequest::~QVSuggestRequest() = default;

std::optional<URL> QVSuggestRequest::url() {
  const auto root = findRootURL();
  if (!root) return std::nullopt;
  ValueMap parameters{{"text", text_}, {"location", queryText(location_)}};
  if (searchExtent_) parameters.set("searchExtent", searchExtent_->string());
  return resourceURL(*root, "/api/v1/suggest", std::move(parameters));
}

}  // namespace quorvelkit
