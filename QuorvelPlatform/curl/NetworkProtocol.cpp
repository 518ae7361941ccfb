// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/Load_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/HostLines_p.h>
#include <QuorvelPlatform/curl/NetworkProtocol_p.h>
#include <QuorvelPlatform/curl/NetworkState_p.h>
#include <QuorvelPlatform/curl/RedirectRule_p.h>

#include <mutex>
#include <new>
#include <utility>

namespace quorvelkit {

namespace {

// The code of URLError for a request that cannot be sent, 0 for one that can.
std::int64_t refusal(const URLRequest& request) {
  const std::string_view scheme = request.url().scheme().value_or("");
  if (!equalsIgnoringASCIICase(scheme, "http") && !equalsIgnoringASCIICase(scheme, "https")) {
    return URLError::unsupportedURL;
  }
  if (request.url().host().value_or("").empty()) return URLError::badURL;
  const bool takesNoBody = request.httpMethod() == "GET" || request.httpMethod() == "HEAD";
  if (takesNoBody && request.httpBody() && !request.httpBody()->empty()) {
    return URLError::dataLengthExceedsMaximum;
  }
  return 0;
}

// One task's way over the network, redirects included.
class NetworkProtocol final : public URLProtocol,
                              private TransferOwner,
                              private HostLines::Visitor {
 public:
  NetworkProtocol(SessionEngine& engine, Load& load, std::shared_ptr<NetworkState> state)
      : engine_(engine), load_(load), state_(std::move(state)) {}

  void startLoading(const URLRequest& request, std::shared_ptr<URLProtocolClient>) override {
    if (const std::int64_t code = refusal(request)) return load_.end(Outcome::failure(code));
    send(request);
  }

  void stopLoading() override {
    if (transfer_) {
      engine_.network().remove(*transfer_);
      transfer_.reset();
    }
    engine_.network().hosts().leave(*this);
  }

 private:
  void send(const URLRequest& request) {
    request_ = &request;
    engine_.network().hosts().enter(*this, request.url());
  }

  // The network library locks something of its own while it makes a handle.
  void connectionIsFree() override try {
    const std::lock_guard lock(engine_.network().atWork());
    transfer_ = state_->takeTransfer();
    transfer_->prepare(*this, *request_,
                       std::chrono::ceil<std::chrono::milliseconds>(load_.idleInterval()));
    engine_.network().add(*transfer_);
  } catch (const std::bad_alloc&) {
    load_.end(Outcome::outOfMemory());
  }

  void didMove() override { load_.touch(engine_.now()); }

  void didEnd(CURLcode code) override try {
    if (transfer_->metStrayInput()) return connectionIsFree();
    Outcome outcome;
    if (transfer_->ranOutOfMemory(code)) outcome = Outcome::outOfMemory();
    outcome.errorCode = transfer_->errorCode(code);
    if (outcome.errorCode != 0) outcome.technicalText = transfer_->technicalText(code);
    const bool isRedirect = outcome.errorCode == 0 && transfer_->redirect().has_value();
    if (isRedirect) {
      redirected_ = std::exchange(transfer_->redirect(), std::nullopt);
      if (++redirects_ > maximumRedirects) outcome.errorCode = URLError::httpTooManyRedirects;
    }
    if (outcome.errorCode == 0 && !isRedirect) {
      HTTPHead& head = outcome.head.emplace();
      head.statusCode = transfer_->statusCode();
      head.lines = transfer_->takeHeaderLines();
      if (redirected_) head.url = redirected_->url();
      outcome.body = Data(transfer_->takeBody());
    }
    if (transfer_->canBeUsedAgain(code)) state_->giveBack(std::move(transfer_));
    transfer_.reset();
    engine_.network().hosts().leave(*this);
    if (outcome.errorCode == 0 && isRedirect) return send(*redirected_);
    load_.end(std::move(outcome));
  } catch (const std::bad_alloc&) {
    load_.end(Outcome::outOfMemory());
  }

  SessionEngine& engine_;
  Load& load_;
  const std::shared_ptr<NetworkState> state_;
  const URLRequest* request_ = nullptr;
  std::unique_ptr<Transfer> transfer_;
  std::optional<URLRequest> redirected_;
  int redirects_ = 0;
};

}  // namespace

std::unique_ptr<URLProtocol> makeNetworkProtocol(SessionEngine& engine, Load& load,
                                                 SessionState& session) {
  return std::make_unique<NetworkProtocol>(engine, load,
                                           NetworkState::of(session, engine.network().sockets()));
}

}  // namespace quorvelkit
