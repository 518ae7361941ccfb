// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Await.h"
#include "Backend.h"
#include "Failure.h"

#include <QuorvelKit/QVFind.h>

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

/// A function of QVFind.
template <class Request, class Response>
using FindFunction = std::shared_ptr<quorvelkit::URLSessionDataTask> (*)(
    std::shared_ptr<Request>, quorvelkit::QVCompletionHandler<Response>);

/// Sends a request to the find server and waits for the response. The configuration must be loaded.
/// Writes an error message and returns null if the request has no URL or the call fails.
template <class Request, class Response>
std::shared_ptr<Response> findCall(const Backend& backend, std::ostream& trace,
                                   const std::shared_ptr<Request>& request,
                                   FindFunction<Request, Response> function) {
  if (!request->url()) {
    fail(
        "The backend's configuration names no find server. "
        "Its operator must set quorvel-find-root-url.");
    return nullptr;
  }
  auto response = await<Response>([&](auto handler) { function(request, std::move(handler)); });
  backend.traceExchange(trace, *response);
  if (const auto problem = Backend::errorText(*response)) {
    fail("The search failed: " + *problem);
    return nullptr;
  }
  return response;
}

/// Returns the best place for a text. Writes an error message and returns nullopt if there is none.
std::optional<quorvelkit::QVCandidate> findPlace(const Backend& backend, std::ostream& trace,
                                                 const std::string& text,
                                                 const quorvelkit::Coordinate& near);
