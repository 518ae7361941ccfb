// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVConfiguration.h>

namespace quorvelkit {

std::shared_ptr<URLSession> QVBaseService::sharedSession() {
  static const auto& session = *new std::shared_ptr<URLSession>(URLSession::make());
  return session;
}

void QVBaseService::loadConfiguration(std::function<void()> completionHandler) {
  if (!completionHandler) fatalError("loadConfiguration needs a completion handler");
  QVConfiguration::get(
      [handler = std::move(completionHandler)](const auto& /*response*/) { handler(); });
}

}  // namespace quorvelkit
