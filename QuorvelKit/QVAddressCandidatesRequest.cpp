// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVAddressCandidatesRequest.h>
#include <QuorvelKit/QVFindQuery_p.h>
#include <QuorvelPlatform/PercentEncoding.h>

namespace quorvelkit {

QVAddressCandidatesRequest::QVAddressCandidatesRequest(std::string singleLine, Coordinate location,
                                                       std::optional<QVSearchExtent> searchExtent,
                                                       std::optional<std::string> magicKey)
    : singleLine_(std::move(singleLine)),
      location_(location),
      searchExtent_(searchExtent),
      magicKey_(std::move(magicKey)) {}

QVAddressCandidatesRequest::~QVAddressCandidatesRequest() = default;

std::optional<URL> QVAddressCandidatesRequest::url() {
  const auto root = findRootURL();
  if (!root) return std::nullopt;
  ValueMap parameters{{"singleLine", urlEncode(singleLine_)}, {"location", queryText(location_)}};
  if (searchExtent_) parameters.set("searchExtent", searchExtent_->string());
  if (magicKey_) parameters.set("magicKey", urlEncode(*magicKey_));
  return resourceURL(*root, "/api/v1/findAddressCandidates", std::move(parameters));
}

}  // namespace quorvelkit
