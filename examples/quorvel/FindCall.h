// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Await.h"
#include "Backend.h"
#include "Failure.h"

#include <QuorvelKit/QVFind.h>

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

/// The text as it may be sent to a find server: what separates parameters in a URL becomes blanks,
/// which mean as little to a search.
std::string searchableText(std::string text);

/// Sends a request to the find server, once the configuration is loaded. Null after telling why
/// there is no answer: a request without a URL is not sent, and one that is may fail.
template <class Response, class Request>
std::shared_ptr<Response> findCall(const Backend& backend, std::ostream& trace,
                                   const std::shared_ptr<Request>& request,
                                   std::shared_ptr<quorvelkit::URLSessionDataTask> (*call)(
                                       std::shared_ptr<Request>,
                                       quorvelkit::QVCompletionHandler<Response>)) {
  if (!request->url()) {
    fail(
        "The backend's configuration names no find server, so there is nobody to ask. "
        "Its operator has to set quorvel-find-root-url.");
    return nullptr;
  }
  auto response = await<Response>([&](auto handler) { call(request, std::move(handler)); });
  backend.traceExchange(trace, *response);
  if (const auto problem = Backend::problem(*response)) {
    fail("The search failed: " + *problem);
    return nullptr;
  }
  return response;
}

/// The best place for a text. Absent after telling why there is none.
std::optional<quorvelkit::QVCandidate> findPlace(const Backend& backend, std::ostream& trace,
                                                 const std::string& text,
                                                 const quorvelkit::Coordinate& near);
