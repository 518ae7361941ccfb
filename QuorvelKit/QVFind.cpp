// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVFind.h>

namespace quorvelkit {

std::shared_ptr<URLSessionDataTask> QVFind::addressCandidates(
    std::shared_ptr<QVAddressCandidatesRequest> request,
    QVCompletionHandler<QVAddressCandidatesResponse> completionHandler) {
  return call(std::move(request), std::move(completionHandler));
}

std::shared_ptr<URLSessionDataTask> QVFind::suggest(
    std::shared_ptr<QVSuggestRequest> request,
    QVCompletionHandler<QVSuggestResponse> completionHandler) {
  return call(std::move(request), std::move(completionHandler));
}

std::shared_ptr<URLSessionDataTask> QVFind::reverseGeocode(
    std::shared_ptr<QVReverseGeocodeRequest> request,
    QVCompletionHandler<QVReverseGeocodeResponse> completionHandler) {
  return call(std::move(request), std::move(completionHandler));
}

}  // namespace quorvelkit
