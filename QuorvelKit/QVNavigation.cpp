// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVNavigation.h>

namespace quorvelkit {

std::shared_ptr<URLSessionDataTask> QVNavigation::route(
    std::shared_ptr<QVRouteRequest> request,
    QVCompletionHandler<QVRouteResponse> completionHandler) {
  return call(std::move(request), std::move(completionHandler));
}

}  // namespace quorvelkit
