// SPDX-License-Identifier: Apache-2.0
// Secrets are never printed, and no public call disables the verification of servers.
// FaultMatrixTest looks for the same canaries in all failures.
#include "tests/support/PublicHeaders.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelKit/QuorvelKit.h>

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <sstream>

namespace quorvelkit {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const auto hasNoSecret =
    AllOf(Not(HasSubstr("canary")), Not(HasSubstr("kvm40972")), Not(HasSubstr("D41F06A3")));

TEST(SecretsTest, PrintedRequestContainsNoValues) {
  const QVLoginRequest request;
  std::ostringstream printed;
  printed << static_cast<const QVBaseRequest&>(request);
  EXPECT_EQ(printed.str(), "QuorvelKit.QVLoginRequest login=... password=...");
}

TEST(SecretsTest, FatalErrorMessagesContainNoSecret) {
  QuorvelKit::setAccessToken("canary");
  QVBackendless::setUserToken("canary");
  const auto request = AllOf(hasNoSecret, HasSubstr("needs a request"));
  const auto handler = AllOf(hasNoSecret, HasSubstr("needs a completion handler"));
  EXPECT_DEATH(QVNavigation::route(nullptr, [](const auto&) {}), request);
  EXPECT_DEATH(QVBackendless::login(nullptr, [](const auto&) {}), request);
  EXPECT_DEATH(QVBackendless::login(nullptr), handler);
  EXPECT_DEATH(QVConfiguration::get(nullptr), handler);
  EXPECT_DEATH(QVBaseService::loadConfiguration(nullptr), handler);
}

TEST(SecretsTest, NoPublicCallDisablesVerification) {
  std::string text;
  for (const auto& [path, header] : test::publicHeaders(QUORVELKIT_SOURCE_DIR))
    text += std::regex_replace(header, std::regex("//[^\n]*"), "");
  const std::regex identifier("[A-Za-z_][A-Za-z_0-9]*"),
      suspicious("verif|trust|certif|ssl|tls|insecure|unsafe|pinn|hostname|allowany|skip",
                 std::regex::icase);
  std::set<std::string> found;
  for (std::sregex_iterator each(text.begin(), text.end(), identifier), end; each != end; ++each) {
    if (std::regex_search(each->str(), suspicious)) found.insert(each->str());
  }
  EXPECT_THAT(found, ElementsAre("clientCertificateRequired", "serverCertificateHasBadDate",
                                 "serverCertificateHasUnknownRoot", "serverCertificateNotYetValid",
                                 "serverCertificateUntrusted"));
}

}  // namespace
}  // namespace quorvelkit
