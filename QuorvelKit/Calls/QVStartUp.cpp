// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/Calls/QVStartUp.h>
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVProcessValue_p.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/MainQueue.h>

#include <unistd.h>

#include <limits>
#include <mutex>
#include <utility>
#include <vector>

namespace quorvelkit {

namespace {

using ConfigurationResponse = std::shared_ptr<QVConfigurationResponse>;
using ConfigurationHandler = QVCompletionHandler<QVConfigurationResponse>;

bool hasRootURL(const QVConfigurationResponse& response) {
  return response.quorvelNavigationRootURL() || response.quorvelFindRootURL();
}

bool isUsable(const ConfigurationResponse& response) {
  return response && !response->error() && hasRootURL(*response);
}

bool isRefused(const QVBaseResponse& response) {
  const auto* const answer = dynamic_cast<const HTTPURLResponse*>(response.response().get());
  return answer != nullptr && (answer->statusCode() == 401 || answer->statusCode() == 403);
}

// Returns a copy that contains an error. The given response stays in the cache unchanged.
ConfigurationResponse withError(const QVConfigurationResponse& response, const Error& error) {
  auto copy = makeResponse<QVConfigurationResponse>(response.data(), response.request(),
                                                    response.response(), error, response.task());
  copy->setError(error);
  return copy;
}

}  // namespace

// One login and one request for the configuration, with the handlers that wait for them. The
// handlers of login and request own this object: if both are dropped, it drops its handlers.
class QVStartUp::Attempt {
 public:
  // Adds the handler to the running attempt, or starts one with this request.
  static void join(std::shared_ptr<QVConfigurationRequest> request,
                   const ConfigurationHandler& handler) {
    static auto& current = *new std::weak_ptr<Attempt>;
    // Both are destroyed after the mutex is unlocked, because handlers may join again.
    std::shared_ptr<Attempt> started, running;
    {
      const std::lock_guard lock(processValueMutex());
      running = current.lock();
      // An attempt of the parent process does not end in this one.
      if (running && !running->hasEnded_ && running->process_ == getpid()) {
        running->handlers_.push_back(handler);
        return;
      }
      started = std::make_shared<Attempt>();
      started->handlers_.push_back(handler);
      current = started;
    }
    start(started, std::move(request));
  }

 private:
  static void start(const std::shared_ptr<Attempt>& attempt,
                    std::shared_ptr<QVConfigurationRequest> request) {
    const std::string storedToken = QVBackendless::userToken();
    QVConfiguration::load(
        std::move(request),
        [attempt, storedToken](const ConfigurationResponse& response) {
          if (isRefused(*response) && QVBackendless::userToken() == storedToken)
            QVBackendless::setUserToken("");
          attempt->end(attempt->result(response));
        },
        [attempt](const auto& proceed) {
          QVBackendless::login([attempt, proceed](const auto& response) {
            attempt->login_ = response;
            proceed();
          });
        });
  }

  ConfigurationResponse result(const ConfigurationResponse& response) const {
    if (isUsable(response)) return response;
    if (!response->error()) {
      return withError(*response,
                       Error::described(std::string(errorDomain), noConfiguration,
                                        "The answer of the backend is no configuration."));
    }
    if (!login_->error()) return response;
    auto failure = makeResponse<QVConfigurationResponse>(
        login_->data(), response->request(), login_->response(), std::nullopt, login_->task());
    failure->setError(login_->error());
    return failure;
  }

  void end(const ConfigurationResponse& response) {
    std::vector<ConfigurationHandler> handlers;
    {
      const std::lock_guard lock(processValueMutex());
      hasEnded_ = true;
      handlers.swap(handlers_);
    }
    for (ConfigurationHandler& handler : handlers)
      MainQueue::main().async([moved = std::move(handler), response] { moved(response); });
  }

  // Guarded by the mutex of process-wide values, which is locked during fork().
  std::vector<ConfigurationHandler> handlers_;
  bool hasEnded_ = false;
  const pid_t process_ = getpid();
  std::shared_ptr<QVLoginResponse> login_;
};

QVCall<QVConfigurationResponse> QVStartUp::loadConfiguration(QVCallOptions options) {
  return QVCall(&load, std::make_shared<QVConfigurationRequest>(), std::move(options));
}

std::shared_ptr<URLSessionDataTask> QVStartUp::load(std::shared_ptr<QVConfigurationRequest> request,
                                                    ConfigurationHandler completionHandler) {
  // Cancelling one call does not cancel the login that it shares with others.
  detail::CallControl::takeCurrent();
  if (auto cached = QVConfiguration::cachedResponse(); isUsable(cached)) {
    MainQueue::main().async(
        [moved = std::move(completionHandler), response = std::move(cached)] { moved(response); });
  } else {
    // Each call that waits for the attempt counts a retry.
    request->setMaxNumberOfRetries(std::numeric_limits<std::int64_t>::max());
    Attempt::join(std::move(request), completionHandler);
  }
  return nullptr;
}

}  // namespace quorvelkit
