// SPDX-License-Identifier: Apache-2.0
#include "BackendFuzzing.h"

using namespace quorvelkit;
using namespace quorvelkit::fuzz;

// Input: the body of a login response. The token is the one of the body or empty, but not that of
// an earlier login.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string body = textOf(bytes, size);
  const auto response = responseFor<QVLoginResponse>(body, 200);
  readAll(response->code(), response->message(), response->objectId());
  require(response->userToken() == JSON(Data(body))["user-token"].string());

  QVBackendless::setUserToken("of an earlier login");
  callAndWait(body, [](const auto& handler) { QVBackendless::login(handler); });
  require(QVBackendless::userToken() == response->userToken().value_or(""));
  return 0;
}
