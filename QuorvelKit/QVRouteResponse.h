// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVRoute.h>
#include <QuorvelPlatform/Export.h>

#include <optional>

namespace quorvelkit {

/// The response to a QVRouteRequest.
class QUORVELKIT_EXPORT QVRouteResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVRouteResponse() override;

  /// The body as a route. Absent if the body is absent, empty or not JSON, which is possible
  /// without an error(): a network that requires a login answers with status 200 and HTML. Any
  /// other JSON (`null`, the document of an error) makes a route without points. Check error(),
  /// then route(), then its points.
  const std::optional<QVRoute>& route() const { return route_; }

 protected:
  void buildModel() override;

 private:
  std::optional<QVRoute> route_;
};

}  // namespace quorvelkit
