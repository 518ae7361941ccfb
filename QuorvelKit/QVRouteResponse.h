// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVRoute.h>
#include <QuorvelPlatform/Export.h>

#include <optional>

namespace quorvelkit {

/// The answer to a QVRouteRequest.
class QUORVELKIT_EXPORT QVRouteResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVRouteResponse() override;

  /// The whole body as a route; absent when there was no body or one that is no JSON. JSON that is
  /// no route, an error's document say, gives one without points: look at error() first.
  const std::optional<QVRoute>& route() const { return route_; }

 protected:
  void buildModel() override;

 private:
  std::optional<QVRoute> route_;
};

}  // namespace quorvelkit
