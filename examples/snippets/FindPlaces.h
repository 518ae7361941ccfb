// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/QVFind.h>

#include <memory>
#include <string>

/// Settings for all searches: five seconds with all retries.
inline quorvelkit::QVCallOptions searchOptions() {
  quorvelkit::QVCallOptions options(quorvelkit::QVDeadline(std::chrono::seconds(5)));
  options.retry = quorvelkit::QVRetryPolicy();
  return options;
}

/// Returns the best place for a text, or the reason why there is none. Waits for the answer.
inline std::string bestPlace(const std::string& text, quorvelkit::Coordinate near) {
  using namespace quorvelkit;
  const auto request = std::make_shared<QVAddressCandidatesRequest>(encodeQueryValue(text), near);
  const QVCallResult<QVAddressCandidatesResponse> result =
      QVCall(QVFind::addressCandidates, request, searchOptions()).wait();
  if (const std::optional<QVNotSent>& notSent = result.notSent())
    return notSent->error().localizedDescription();
  if (const auto error = result.error()) return error->localizedDescription();
  const auto& candidates = result->candidates();
  if (candidates.empty()) return "There is no such place.";
  const QVCandidate& best = candidates.front();
  return best.address().value_or("") + ", score " + std::to_string(best.score().value_or(0));
}

/// Returns the address at a location, or "" if none is known. Waits for the answer.
inline std::string addressAt(quorvelkit::Coordinate location) {
  using namespace quorvelkit;
  const auto request = std::make_shared<QVReverseGeocodeRequest>(location);
  const QVCallResult<QVReverseGeocodeResponse> result =
      QVCall(QVFind::reverseGeocode, request, searchOptions()).wait();
  if (result.error()) return "";
  const QVReverseGeocodeResponse& response = *result;
  const std::optional<QVAddress>& address = response.address();
  return address ? address->matchAddress().value_or("") : "";
}

/// Returns the first suggestion for an incomplete text, or "". Waits for the answer.
inline std::string firstSuggestion(const std::string& text, quorvelkit::Coordinate near) {
  using namespace quorvelkit;
  const auto request = std::make_shared<QVSuggestRequest>(encodeQueryValue(text), near);
  const QVCallResult<QVSuggestResponse> result =
      QVCall(QVFind::suggest, request, searchOptions()).wait();
  if (result.error() || result->suggestions().empty()) return "";
  const QVSuggestResponse& response = *result;
  return response.suggestions().front().text().value_or("");
}
