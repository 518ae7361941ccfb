// SPDX-License-Identifier: Apache-2.0
#include "Fuzzing.h"
#include "tests/kit/FakeServer.h"

#include <QuorvelKit/QVReverseGeocodeRequest.h>
#include <QuorvelKit/QVRouteRequest.h>

using namespace quorvelkit;
using namespace quorvelkit::fuzz;

namespace {

// Makes a server answer every request with `body`.
void answerWith(const std::string& body) {
  static auto& server = *new test::FakeServer;
  server.clearRequests();
  for (const std::string& path : {test::loginPath, test::configurationPath})
    server.set(path, {200, body});
}

// Passes a completion handler to `call`, and checks that the handler runs exactly once.
void callAndWait(auto call) {
  int runs = 0;
  call([&](const auto& /*response*/) { ++runs; });
  require(test::runMainQueueUntil([&] { return runs > 0; }));
  MainQueue::main().runPending();
  require(runs == 1);
}

// A request has a URL if and only if its root URL and path are a valid URL.
void checkURL(QVBaseRequest& request, const std::optional<std::string>& root,
              const std::string& path) {
  const auto url = request.url();
  require(url.has_value() == (root && URL::parse(*root + path).has_value()));
  require(!url || url->absoluteString().starts_with(*root + path));
}

}  // namespace

// Input: the body of a login response and of a configuration response. The token is the one of the
// body or empty, but not that of an earlier login.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string body = textOf(bytes, size);
  const auto response = responseFor<QVLoginResponse>(body, 200);
  readAll(response->code(), response->message(), response->objectId());
  require(response->userToken() == JSON(Data(body))["user-token"].string());
  answerWith(body);
  QVBackendless::setUserToken("of an earlier login");
  callAndWait([](const auto& handler) { QVBackendless::login(handler); });
  require(QVBackendless::userToken() == response->userToken().value_or(""));

  QVConfiguration::setCachedResponse(nullptr);
  callAndWait([](const auto& handler) { QVConfiguration::get(handler); });
  const auto configuration = QVConfiguration::cachedResponse();
  require(configuration && !configuration->error());
  QVRouteRequest route(Coordinate{1, 2}, Coordinate{3, 4});
  checkURL(route, configuration->quorvelNavigationRootURL(), "/v4/route?startLat=1.0");
  QVReverseGeocodeRequest reverse(Coordinate{1, 2});
  checkURL(reverse, configuration->quorvelFindRootURL(), "/api/v1/reverseGeocode?location=2.0,1.0");
  return 0;
}
