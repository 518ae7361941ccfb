// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/URLProtocol.h>

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace quorvelkit::test {

inline const std::string token36 = "11111111-2222-4333-8444-555555555555";
inline const std::string loginPath = "/v1/users/login";
inline const std::string configurationPath =
    "/5E2C9F14-7A03-41BD-C8E6-0F93D27A61B5/v1/files/configuration/configuration.json";

/// The body of a configuration.
inline std::string roots(const std::string& navigation, const std::string& find) {
  const ValueMap map{{"quorvel-navigation-root-url", navigation}, {"quorvel-find-root-url", find}};
  return std::string(JSON(map).rawData()->view());
}
/// Caches a configuration with this body.
inline void configure(const std::string& body) {
  QVConfiguration::setCachedResponse(makeResponse<QVConfigurationResponse>(
      Data(body), std::make_shared<QVConfigurationRequest>()));
}

/// A URL protocol that answers every request of the process by its path, and with 404 for unknown
/// paths. By default login and configuration succeed. Thread-safe.
class FakeServer {
 public:
  struct Answer {
    int status = 200;  // 0: there is no network
    std::string body;
    bool isHeld = false;  // not sent before release()
  };

  /// Is never unregistered: a call that outlives its test must not reach the network.
  FakeServer() {
    URLProtocol::registerFactory(
        [state = state_](const URLRequest&) { return std::make_unique<Loader>(state); });
    QVBackendless::setBaseURL("http://backend.test");
    set(loginPath, {200, R"({"objectId":"A","user-token":")" + token36 + "\"}"});
    set(configurationPath, {200, roots("http://nav.test", "http://find.test")});
  }
  FakeServer(const FakeServer&) = delete;
  FakeServer& operator=(const FakeServer&) = delete;

  void set(const std::string& path, Answer answer) {
    const std::lock_guard lock(state_->mutex);
    state_->answers[path] = std::move(answer);
  }
  void hold(const std::string& path) {
    const std::lock_guard lock(state_->mutex);
    state_->answers.at(path).isHeld = true;
  }
  /// Waits for this number of requests, then returns all requests.
  std::vector<URLRequest> requests(std::size_t atLeast = 0) {
    std::unique_lock lock(state_->mutex);
    state_->changed.wait_for(lock, std::chrono::seconds(20),
                             [&] { return state_->requests.size() >= atLeast; });
    return state_->requests;
  }
  void clearRequests() {
    const std::lock_guard lock(state_->mutex);
    state_->requests.clear();
  }
  /// Sends the held answers.
  void release() {
    std::vector<std::function<void()>> held;
    {
      const std::lock_guard lock(state_->mutex);
      held.swap(state_->held);
    }
    for (const auto& answer : held)
      answer();
  }

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::map<std::string, Answer, std::less<>> answers;
    std::vector<URLRequest> requests;
    std::vector<std::function<void()>> held;

    Answer answerTo(const URLRequest& request) {
      const std::lock_guard lock(mutex);
      const auto found = answers.find(request.url().path());
      return found == answers.end() ? Answer{404, "no such resource"} : found->second;
    }
    void answer(const URLRequest& request, URLProtocolClient& client) {
      const Answer answer = answerTo(request);
      if (answer.status == 0) {
        return client.didFail(URLError::make(URLError::notConnectedToInternet, request.url()));
      }
      client.didReceive(
          std::make_shared<HTTPURLResponse>(request.url(), answer.status, HTTPHeaderFields()));
      if (!answer.body.empty()) client.didLoad(Data(answer.body));
      client.didFinishLoading();
    }
  };
  class Loader : public URLProtocol {
   public:
    explicit Loader(std::shared_ptr<State> state) : state_(std::move(state)) {}
    void startLoading(const URLRequest& request,
                      std::shared_ptr<URLProtocolClient> client) override {
      const auto answer = [state = state_, request, client] { state->answer(request, *client); };
      const bool isHeld = state_->answerTo(request).isHeld;
      {
        const std::lock_guard lock(state_->mutex);
        state_->requests.push_back(request);
        if (isHeld) state_->held.push_back(answer);
      }
      state_->changed.notify_all();
      if (!isHeld) answer();
    }
    void stopLoading() override {}

   private:
    std::shared_ptr<State> state_;
  };

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// Runs the main queue until the condition is true. Returns false if no block comes for 20 seconds.
template <class Condition>
bool runMainQueueUntil(Condition condition) {
  while (!condition()) {
    if (!MainQueue::main().runOnce(std::chrono::seconds(20))) return false;
  }
  return true;
}

}  // namespace quorvelkit::test
