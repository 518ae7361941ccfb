// SPDX-License-Identifier: Apache-2.0
#include "BackendFuzzing.h"

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVReverseGeocodeRequest.h>
#include <QuorvelKit/QVRouteRequest.h>

using namespace quorvelkit;
using namespace quorvelkit::fuzz;

// Input: the body of a configuration response. A request has a URL if and only if its root URL and
// path are a valid URL.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  QVBackendless::setUserToken("");
  QVConfiguration::setCachedResponse(nullptr);
  callAndWait(textOf(bytes, size), [](const auto& handler) { QVConfiguration::get(handler); });
  const auto configuration = QVConfiguration::cachedResponse();
  require(configuration && !configuration->error());
  const auto check = [](QVBaseRequest& request, const std::optional<std::string>& root,
                        const std::string& path) {
    const auto url = request.url();
    require(url.has_value() == (root && URL::parse(*root + path).has_value()));
    require(!url || url->absoluteString().starts_with(*root + path));
  };
  QVRouteRequest route(Coordinate{1, 2}, Coordinate{3, 4});
  check(route, configuration->quorvelNavigationRootURL(), "/v4/route?startLat=1.0");
  QVReverseGeocodeRequest reverse(Coordinate{1, 2});
  check(reverse, configuration->quorvelFindRootURL(), "/api/v1/reverseGeocode?location=2.0,1.0");
  return 0;
}
