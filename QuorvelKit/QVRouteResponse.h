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

  /// The whole body as a route. Absent when there was no body, one of no bytes, or one that is no
  /// JSON; an absent error() does not rule that out, since a network that asks for a login first
  /// answers with status 200 and HTML. JSON that is no route (`null`, the document of an error)
  /// gives a route without points. So look at error(), then at route(), then at its points.
  const std::optional<QVRoute>& route() const { return route_; }

 protected:
  void buildModel() override;

 private:
  std::optional<QVRoute> route_;
};

}  // namespace quorvelkit
