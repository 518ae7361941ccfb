// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII.h>
#include <QuorvelPlatform/Load_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/NetworkProtocol_p.h>
#include <QuorvelPlatform/curl/NetworkState_p.h>
#include <QuorvelPlatform/curl/RedirectRule_p.h>

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
class NetworkProtocol final : public URLProtocol, private TransferOwner {
 public:
  NetworkProtocol(SessionEngine& engine, Load& load, std::shared_ptr<NetworkState> state)
      : engine_(engine), load_(load), state_(std::move(state)) {}

  void startLoading(const URLRequest& request, std::shared_ptr<URLProtocolClient>) override {
    if (const std::int64_t code = refusal(request)) return load_.end(Outcome::failure(code));
    transfer_ = state_->takeTransfer();
    send(request);
  }

  void stopLoading() override {
    if (!transfer_) return;
    engine_.network().remove(*transfer_);
    state_->giveBack(std::move(transfer_));
  }

 private:
  void send(const URLRequest& request) {
    sent_ = &request;
    transfer_->prepare(*this, request,
                       std::chrono::ceil<std::chrono::milliseconds>(load_.idleInterval()));
    engine_.network().add(*transfer_);
  }

  void didMove() override { load_.touch(engine_.now()); }

  void didEnd(CURLcode code) override {
    if (transfer_->metStrayInput()) return send(*sent_);
    const std::int64_t errorCode = transfer_->errorCode(code);
    if (errorCode == 0 && transfer_->redirect()) {
      request_ = std::exchange(transfer_->redirect(), std::nullopt);
      if (++redirects_ <= maximumRedirects) return send(*request_);
    }
    Outcome outcome;
    if (errorCode != 0) {
      outcome.errorCode = errorCode;
    } else if (redirects_ > maximumRedirects) {
      outcome.errorCode = URLError::httpTooManyRedirects;
    } else {
      HTTPHead& head = outcome.head.emplace();
      head.statusCode = transfer_->statusCode();
      head.lines = transfer_->takeHeaderLines();
      if (request_) head.url = request_->url();
      outcome.body = Data(transfer_->takeBody());
    }
    // The handle of a failure keeps its system error, which the next one would take for its own.
    if (code == CURLE_OK) state_->giveBack(std::move(transfer_));
    transfer_.reset();
    load_.end(std::move(outcome));
  }

  SessionEngine& engine_;
  Load& load_;
  const std::shared_ptr<NetworkState> state_;
  std::unique_ptr<Transfer> transfer_;
  const URLRequest* sent_ = nullptr;
  std::optional<URLRequest> request_;
  int redirects_ = 0;
};

}  // namespace

std::unique_ptr<URLProtocol> makeNetworkProtocol(SessionEngine& engine, Load& load,
                                                 SessionState& session) {
  return std::make_unique<NetworkProtocol>(engine, load, NetworkState::of(session));
}

}  // namespace quorvelkit
