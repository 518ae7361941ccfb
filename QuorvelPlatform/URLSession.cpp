// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/DataTask_p.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/SessionState_p.h>
#include <QuorvelPlatform/URLSession.h>

#include <utility>

namespace quorvelkit {

SessionState::~SessionState() {
  if (transferPoolGeneration != SessionEngine::processGeneration()) leakTransferPool();
}

void SessionState::leakTransferPool() {
  if (transferPool)
    const NeverDestroyed<std::shared_ptr<TransferPool>> leaked(std::move(transferPool));
}

URLSession::URLSession(std::shared_ptr<SessionState> state) : state_(std::move(state)) {}
URLSession::~URLSession() = default;

std::shared_ptr<URLSession> URLSession::make(URLSessionConfiguration configuration) {
  return std::shared_ptr<URLSession>(
      new URLSession(std::make_shared<SessionState>(std::move(configuration))));
}

const URLSessionConfiguration& URLSession::configuration() const noexcept {
  return state_->configuration;
}

std::shared_ptr<URLSessionDataTask> URLSession::dataTask(URLRequest request,
                                                         CompletionHandler completionHandler) {
  if (!completionHandler) fatalError("A data task needs a completion handler.");
  return std::make_shared<DataTask>(state_, std::move(request), std::move(completionHandler));
}

URLSessionDataTask::~URLSessionDataTask() = default;

}  // namespace quorvelkit
