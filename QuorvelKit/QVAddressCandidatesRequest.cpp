// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVAddressCandidatesRequest.h>
#include <QuorvelKit/QVFindWireFormat_p.h>
#include <QuorvelPlatform/FatalError.h>

namespace quorvelkit {

namespace {

std::string sentText(const std::string& text, bool isEncoded, const char* member) {
  if (isEncoded) return text;
  auto encodedText = percentEncodedForQuery(text);
  if (!encodedText) {
    fatalError(std::string(unwrappedAbsentValue) + ": QVAddressCandidatesRequest::" + member +
               " is not UTF-8");
  }
  return *std::move(encodedText);
}

}  // namespace

QVAddressCandidatesRequest::QVAddressCandidatesRequest(std::string singleLine, Coordinate location,
                                                       std::optional<QVSearchExtent> searchExtent,
                                                       std::optional<std::string> magicKey)
    : singleLine_(std::move(singleLine)),
      location_(location),
      searchExtent_(searchExtent),
      magicKey_(std::move(magicKey)) {}

QVAddressCandidatesRequest::QVAddressCandidatesRequest(const QueryValue& singleLine,
                                                       Coordinate location,
                                                       std::optional<QVSearchExtent> searchExtent)
    : singleLine_(singleLine.encoded()),
      location_(location),
      searchExtent_(searchExtent),
      isSingleLineEncoded_(true) {}

QVAddressCandidatesRequest::~QVAddressCandidatesRequest() = default;

std::optional<URL> QVAddressCandidatesRequest::url() {
  const auto root = findRootURL();
  if (!root) return std::nullopt;
  ValueMap parameters{{"singleLine", sentText(singleLine_, isSingleLineEncoded_, "singleLine")},
                      {"location", queryText(location_)}};
  if (searchExtent_) parameters.set("searchExtent", searchExtent_->string());
  if (magicKey_) parameters.set("magicKey", sentText(*magicKey_, isMagicKeyEncoded_, "magicKey"));
  return resourceURL(*root, "/api/v1/findAddressCandidates", std::move(parameters));
}

}  // namespace quorvelkit
