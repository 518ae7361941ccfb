// SPDX-License-Identifier: Apache-2.0
#include "sandbox/page/PageCalls.h"

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/Calls/QVStartUp.h>
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVFind.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelPlatform/PercentEncoding.h>
#include <QuorvelPlatform/UTF8.h>

#include <charconv>
#include <chrono>
#include <memory>

namespace quorvelkit::sandbox {
namespace {

using namespace std::chrono_literals;
constexpr auto deadline = 20s;

std::string parameter(const HTTPRequest& request, const char* name) {
  const auto found = request.parameters.find(name);
  return found == request.parameters.end() ? "" : found->second;
}

std::optional<Coordinate> coordinate(const HTTPRequest& request, const char* name) {
  const std::string text = parameter(request, name);
  const char* const end = text.data() + text.size();
  Coordinate result;
  const auto [comma, error] = std::from_chars(text.data(), end, result.latitude);
  if (error != std::errc() || comma == end || *comma != ',') return std::nullopt;
  const auto [rest, lastError] = std::from_chars(comma + 1, end, result.longitude);
  const bool isValid = lastError == std::errc() && rest == end && result.latitude >= -90 &&
                       result.latitude <= 90 && result.longitude >= -180 && result.longitude <= 180;
  return isValid ? std::optional(result) : std::nullopt;
}

HTTPAnswer failure(int status, const std::string& message) {
  return HTTPAnswer::failure(status, status, message);
}

/// Calls a facade of the library. Returns the body that it received.
template <class Request, class Response>
HTTPAnswer call(std::shared_ptr<URLSessionDataTask> (*facade)(std::shared_ptr<Request>,
                                                              QVCompletionHandler<Response>),
                std::shared_ptr<Request> request) {
  const auto result = QVCall(facade, std::move(request), QVDeadline(deadline)).wait();
  if (const auto error = result.error()) {
    // The description of a server's error is its body. A browser would write an error status into
    // its console.
    const std::string text = error->localizedDescription();
    return HTTPAnswer::json(
        JSON::makeDictionary({{"error", JSON::parse(text)["message"].string().value_or(text)}}));
  }
  const auto& body = result->data();
  return {200, "application/json", body ? std::string(body->view()) : std::string()};
}

HTTPAnswer route(const HTTPRequest& request) {
  const auto from = coordinate(request, "from"), to = coordinate(request, "to");
  if (!from || !to) return failure(400, "from and to must be coordinates: LAT,LON.");
  return call(QVNavigation::route, std::make_shared<QVRouteRequest>(*from, *to));
}

HTTPAnswer find(const HTTPRequest& request) {
  const auto near = coordinate(request, "near");
  const std::string text = parameter(request, "text"), key = parameter(request, "key");
  if (!near) return failure(400, "near must be a coordinate: LAT,LON.");
  if (!isUTF8(text) || !isUTF8(key)) return failure(400, "The text is not UTF-8.");
  const QueryValue encoded = encodeQueryValue(text);
  if (request.path == "/page/suggest")
    return call(QVFind::suggest, std::make_shared<QVSuggestRequest>(encoded, *near));
  auto candidates = std::make_shared<QVAddressCandidatesRequest>(encoded, *near);
  if (!key.empty()) candidates->setMagicKey(encodeQueryValue(key));
  return call(QVFind::addressCandidates, std::move(candidates));
}

}  // namespace

std::optional<HTTPAnswer> PageCalls::answer(const HTTPRequest& request,
                                            const std::string& rootURL) {
  const bool isRoute = request.path == "/page/route";
  if (!isRoute && request.path != "/page/suggest" && request.path != "/page/candidates")
    return std::nullopt;
  if (request.method != "GET") return failure(405, "This resource supports the method GET only.");
  if (QVBackendless::baseURL() != rootURL)
    return failure(503, "Only the program quorvel-sandbox answers the calls of its page.");
  if (!free_.try_acquire()) return failure(503, "Too many calls of the page are running.");
  struct Release {
    std::counting_semaphore<maximumCalls>& semaphore;
    ~Release() { semaphore.release(); }
  } const release{free_};
  const auto start = QVStartUp::loadConfiguration(QVDeadline(deadline)).wait();
  if (const auto error = start.error()) return failure(502, error->localizedDescription());
  return isRoute ? route(request) : find(request);
}

}  // namespace quorvelkit::sandbox
