// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/BodyMemory_p.h>
#include <QuorvelPlatform/SessionEngine_p.h>
#include <QuorvelPlatform/TaskLoader_p.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/curl/HostConnectionLimiter_p.h>
#include <QuorvelPlatform/curl/NetworkProtocol_p.h>
#include <QuorvelPlatform/curl/RedirectRule_p.h>
#include <QuorvelPlatform/curl/TransferPool_p.h>

#include <mutex>
#include <new>
#include <utility>

namespace quorvelkit {

namespace {

// Returns the URLError code if the request cannot be sent, otherwise 0.
std::int64_t requestError(const URLRequest& request) {
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

// Sends the request of one data task over HTTP and follows redirects.
class NetworkProtocol final : public URLProtocol,
                              private TransferDelegate,
                              private HostConnectionLimiter::Client {
 public:
  NetworkProtocol(SessionEngine& engine, TaskLoader& loader, std::shared_ptr<TransferPool> pool)
      : engine_(engine), loader_(loader), pool_(std::move(pool)) {}

  void startLoading(const URLRequest& request, std::shared_ptr<URLProtocolClient>) override {
    if (const std::int64_t code = requestError(request)) {
      return loader_.end(TaskResult::failure(code));
    }
    send(request);
  }

  void stopLoading() override {
    if (transfer_) {
      engine_.transferLoop().remove(*transfer_);
      transfer_.reset();
    }
    engine_.transferLoop().connectionLimiter().release(*this);
  }

 private:
  void send(const URLRequest& request) {
    request_ = &request;
    engine_.transferLoop().connectionLimiter().acquire(*this, request.url());
  }

  // libcurl locks internal mutexes while it creates a handle.
  void didAcquireConnection() override try {
    const std::lock_guard lock(engine_.transferLoop().libcurlMutex());
    transfer_ = pool_->take();
    transfer_->prepare(*this, *request_,
                       std::chrono::ceil<std::chrono::milliseconds>(loader_.idleInterval()));
    engine_.transferLoop().add(*transfer_);
  } catch (const std::bad_alloc&) {
    loader_.end(TaskResult::outOfMemory());
  }

  void didTransferBytes() override { loader_.restartIdleTimer(engine_.now()); }

  void didEnd(CURLcode code) override try {
    if (transfer_->foundStaleInput()) return didAcquireConnection();
    TaskResult result;
    if (transfer_->ranOutOfMemory(code)) result = TaskResult::outOfMemory();
    result.errorCode = transfer_->errorCode(code);
    if (result.errorCode != 0) result.technicalText = transfer_->technicalText(code);
    const bool isRedirect = result.errorCode == 0 && transfer_->redirect().has_value();
    if (isRedirect) {
      redirectedRequest_ = std::exchange(transfer_->redirect(), std::nullopt);
      if (++redirectCount_ > maximumRedirects) result.errorCode = URLError::httpTooManyRedirects;
    }
    if (result.errorCode == 0 && !isRedirect) {
      HTTPHeaderBlock& header = result.header.emplace();
      header.statusCode = transfer_->statusCode();
      header.lines = transfer_->takeHeaderLines();
      if (redirectedRequest_) header.url = redirectedRequest_->url();
      result.body = BodyMemory::makeData(transfer_->takeBody());
    }
    if (transfer_->isReusable(code)) pool_->recycle(std::move(transfer_));
    transfer_.reset();
    engine_.transferLoop().connectionLimiter().release(*this);
    if (result.errorCode == 0 && isRedirect) return send(*redirectedRequest_);
    loader_.end(std::move(result));
  } catch (const std::bad_alloc&) {
    loader_.end(TaskResult::outOfMemory());
  }

  SessionEngine& engine_;
  TaskLoader& loader_;
  const std::shared_ptr<TransferPool> pool_;
  const URLRequest* request_ = nullptr;
  std::unique_ptr<Transfer> transfer_;
  std::optional<URLRequest> redirectedRequest_;
  int redirectCount_ = 0;
};

}  // namespace

std::unique_ptr<URLProtocol> makeNetworkProtocol(SessionEngine& engine, TaskLoader& loader,
                                                 SessionState& session) {
  return std::make_unique<NetworkProtocol>(
      engine, loader, TransferPool::of(session, engine.transferLoop().sockets()));
}

}  // namespace quorvelkit
