// SPDX-License-Identifier: Apache-2.0
#include "FindCall.h"

using namespace quorvelkit;

std::optional<QVCandidate> findPlace(const Backend& backend, std::ostream& trace,
                                     const std::string& text, const Coordinate& near) {
  const auto request = std::make_shared<QVAddressCandidatesRequest>(encodeQueryValue(text), near);
  const auto response = findCall(backend, trace, request, &QVFind::addressCandidates);
  if (!response) return std::nullopt;
  if (response->candidates().empty()) {
    fail("There is no place '" + text + "' on the server's map.");
    return std::nullopt;
  }
  return response->candidates().front();
}
