// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/NetworkProtocol_p.h>

namespace quorvelkit {

namespace {

// Until transfers are built, requests that no registered protocol wants fail.
class NoNetwork final : public URLProtocol {
 public:
  void startLoading(const URLRequest& request, std::shared_ptr<URLProtocolClient> client) override {
    client->didFail(URLError::make(URLError::notConnectedToInternet, request.url()));
  }
  void stopLoading() override {}
};

}  // namespace

std::unique_ptr<URLProtocol> makeNetworkProtocol(SessionEngine&, Load&, SessionState&) {
  return std::make_unique<NoNetwork>();
}

}  // namespace quorvelkit
