// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/URLProtocol.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

/// Answers requests from stored bodies, by the path of their URL, for an application without a
/// network.
class OfflineProtocol : public quorvelkit::URLProtocol {
 public:
  using Bodies = std::map<std::string, quorvelkit::Data, std::less<>>;

  static Registration use(Bodies bodies) {
    const auto shared = std::make_shared<const Bodies>(std::move(bodies));
    return registerFactory([shared](const quorvelkit::URLRequest&) {
      return std::unique_ptr<URLProtocol>(new OfflineProtocol(shared));
    });
  }

  void startLoading(const quorvelkit::URLRequest& request,
                    std::shared_ptr<quorvelkit::URLProtocolClient> client) override {
    using namespace quorvelkit;
    const auto found = bodies_->find(request.url().path());
    if (found == bodies_->end())
      return client->didFail(URLError::make(URLError::notConnectedToInternet, request.url()));
    HTTPHeaderFields fields;
    fields.set("Content-Type", "application/json");
    client->didReceive(std::make_shared<HTTPURLResponse>(request.url(), 200, fields));
    client->didLoad(found->second);
    client->didFinishLoading();
  }
  void stopLoading() override {}

 private:
  explicit OfflineProtocol(std::shared_ptr<const Bodies> bodies) : bodies_(std::move(bodies)) {}

  std::shared_ptr<const Bodies> bodies_;
};
