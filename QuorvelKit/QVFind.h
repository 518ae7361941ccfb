// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVAddressCandidatesRequest.h>
#include <QuorvelKit/QVAddressCandidatesResponse.h>
#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVReverseGeocodeRequest.h>
#include <QuorvelKit/QVReverseGeocodeResponse.h>
#include <QuorvelKit/QVSuggestRequest.h>
#include <QuorvelKit/QVSuggestResponse.h>
#include <QuorvelPlatform/Export.h>

#include <memory>

namespace quorvelkit {

/// Searches addresses and places. Thread-safe. QVBaseService describes threads, errors and
/// lifetimes. Cost: one HTTP request for each call; the first call of a process also sends the
/// login and the request for the configuration.
///
///     auto request = std::make_shared<QVAddressCandidatesRequest>("1726 Fleet Street",
///                                                                 Coordinate{39.28, -76.59});
///     QVBaseService::loadConfiguration([request] {
///       if (!request->url()) return report("The configuration names no find server.");
///       QVFind::addressCandidates(request, [](const auto& found) {
///         if (found->error()) return report(*found->error());
///         if (found->candidates().empty()) return report("There is no such place.");
///         for (const QVCandidate& place : found->candidates()) show(place);
///       });
///     });
class QUORVELKIT_EXPORT QVFind : public QVBaseService {
 public:
  /// Finds the places that match an address or a name.
  static std::shared_ptr<URLSessionDataTask> addressCandidates(
      std::shared_ptr<QVAddressCandidatesRequest> request,
      QVCompletionHandler<QVAddressCandidatesResponse> completionHandler);
  /// Completes a search text while the user types. QVSuggestRequest::text says which texts are
  /// sent.
  static std::shared_ptr<URLSessionDataTask> suggest(
      std::shared_ptr<QVSuggestRequest> request,
      QVCompletionHandler<QVSuggestResponse> completionHandler);
  /// Finds the address of a location.
  static std::shared_ptr<URLSessionDataTask> reverseGeocode(
      std::shared_ptr<QVReverseGeocodeRequest> request,
      QVCompletionHandler<QVReverseGeocodeResponse> completionHandler);
};

}  // namespace quorvelkit
