// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Backend.h"
#include "Failure.h"
#include "Problem.h"
#include "ServerText.h"

#include <QuorvelKit/QVFind.h>

#include <memory>
#include <optional>
#include <string>

/// A function of QVFind.
template <class Request, class Response>
using FindFunction = std::shared_ptr<quorvelkit::URLSessionDataTask> (*)(
    std::shared_ptr<Request>, quorvelkit::QVCompletionHandler<Response>);

/// Sends a request to the find server and waits for the response. The configuration must be loaded.
/// If `printsBody` is true, prints the body if there is one. Writes an error message and returns
/// null if the call fails or the answer is no document of a find server.
template <class Request, class Response>
std::shared_ptr<Response> findCall(const Backend& backend, std::ostream& trace,
                                   const std::shared_ptr<Request>& request,
                                   FindFunction<Request, Response> function,
                                   bool printsBody = false) {
  const auto result = backend.call(trace, function, request);
  if (const auto& notSent = result.notSent()) {
    fail(problemOf(*notSent, findServer));
    return nullptr;
  }
  if (printsBody && result->data() && !result->data()->empty()) printBody(result->data()->view());
  if (const auto problem = problemOf(*result)) {
    fail("The search failed: " + *problem);
  } else if (!isJSONObject(*result)) {
    fail("The search failed: " + answerText(*result) + ", which is no answer of a find server.");
  } else {
    return result.response();
  }
  return nullptr;
}
