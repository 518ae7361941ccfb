// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVConfiguration.h>

#include <memory>
#include <optional>
#include <utility>

/// A request, a response with a model, and a facade of an application.
class ForecastRequest : public quorvelkit::QVBaseRequest {
 public:
  std::optional<quorvelkit::URL> url() override {
    const auto configuration = quorvelkit::QVConfiguration::cachedResponse();
    const auto root = configuration ? configuration->quorvelFindRootURL() : std::nullopt;
    return root ? quorvelkit::URL::parse(*root + "/forecast") : std::nullopt;
  }
};

class Forecast : public quorvelkit::QVBaseObject {
 public:
  using QVBaseObject::QVBaseObject;

  std::optional<double> degreesCelsius() const { return read<double>("celsius"); }
};

class ForecastResponse : public quorvelkit::QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;

  const std::optional<Forecast>& forecast() const { return forecast_; }

 protected:
  void buildModel() override {
    QVBaseResponse::buildModel();
    if (hasJSONBody()) forecast_.emplace(json());
  }

 private:
  std::optional<Forecast> forecast_;
};

class Weather : public quorvelkit::QVBaseService {
 public:
  static void forecast(quorvelkit::QVCompletionHandler<ForecastResponse> completionHandler) {
    const auto request = std::make_shared<ForecastRequest>();
    quorvelkit::QVCallSteps<ForecastResponse> steps;
    steps.makeHTTPRequest = [request] {
      std::optional<quorvelkit::URLRequest> http = request->request();
      if (http) http->setValue("en", "Accept-Language");
      return http;
    };
    call(request, std::move(completionHandler), std::move(steps));
  }
};
