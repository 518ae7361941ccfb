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

/// Place search. The first call of a process also logs in and loads the configuration; each later
/// one is one exchange. QVBaseService tells what holds for every call.
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
  /// The places that a line of text may mean.
  static std::shared_ptr<URLSessionDataTask> addressCandidates(
      std::shared_ptr<QVAddressCandidatesRequest> request,
      QVCompletionHandler<QVAddressCandidatesResponse> completionHandler);
  /// How a text that is being typed may go on. Read QVSuggestRequest::text on what may be typed.
  static std::shared_ptr<URLSessionDataTask> suggest(
      std::shared_ptr<QVSuggestRequest> request,
      QVCompletionHandler<QVSuggestResponse> completionHandler);
  /// The address at a location.
  static std::shared_ptr<URLSessionDataTask> reverseGeocode(
      std::shared_ptr<QVReverseGeocodeRequest> request,
      QVCompletionHandler<QVReverseGeocodeResponse> completionHandler);
};

}  // namespace quorvelkit
