// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/DateFormatter.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/PercentEncoding.h>
#include <QuorvelPlatform/URLSession.h>

#include <functional>
#include <memory>
#include <string>

/// Asks a server for the news about a topic. The handler runs on the callback thread. Returns null
/// if the address of the server is no URL.
inline std::shared_ptr<quorvelkit::URLSessionDataTask> downloadNews(
    const std::string& server, const std::string& topic,
    std::function<void(const std::string&)> report) {
  using namespace quorvelkit;
  const QueryValue about = encodeQueryValue(topic);
  const auto url = URL::parse(server + "/news?about=" + about.encoded());
  if (!url) return nullptr;
  URLRequest request(*url);
  const DateFormatter formatter = DateFormatter::RFC3339DateFormatter();
  request.setValue(formatter.string(std::chrono::system_clock::now()), "Sent-At");
  request.setTimeoutInterval(std::chrono::seconds(10));

  URLSessionConfiguration settings = URLSessionConfiguration::defaultConfiguration();
  settings.maximumBodySize = 1'000'000;  // bytes
  const std::shared_ptr<URLSession> session = URLSession::make(settings);
  const std::shared_ptr<URLSessionDataTask> task = session->dataTask(
      request, [report](const std::optional<Data>& data,
                        const std::shared_ptr<const URLResponse>& response, const auto& error) {
        if (error) return report(error->localizedDescription());
        const auto* const http = dynamic_cast<const HTTPURLResponse*>(response.get());
        report(std::to_string(http ? http->statusCode() : 0) + ": " + std::string(data->view()));
      });
  task->resume();
  return task;
}
