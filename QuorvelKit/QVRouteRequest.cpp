// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelPlatform/DateFormatter.h>

#include <string>
#include <utility>

namespace quorvelkit {

namespace {

const DateFormatter& timeFormatter() {
  static const auto& formatter = *new DateFormatter(DateFormatter::RFC3339DateFormatter());
  return formatter;
}

}  // namespace

QVRouteRequest::QVRouteRequest(Coordinate start, Coordinate end, Instant time,
                               QVRouteRequestType requestType, std::optional<double> /*speed*/,
                               std::optional<double> /*course*/)
    : start_(start), end_(end), time_(time), requestType_(requestType) {}

QVRouteRequest::~QVRouteRequest() = default;

std::optional<URL> QVRouteRequest::url() {
  const auto configuration = QVConfiguration::cachedResponse();
  const auto root = configuration ? configuration->quorvelNavigationRootURL() : std::nullopt;
  if (!root) return std::nullopt;
  ValueMap parameters{{"startLat", start_.latitude},
                      {"startLon", start_.longitude},
                      {"endLat", end_.latitude},
                      {"endLon", end_.longitude},
                      {"time", timeFormatter().string(time_)},
                      {"requestType", rawValue(requestType_)}};
  if (speed_) parameters.set("speed", *speed_);
  if (course_) parameters.set("course", *course_);
  return resourceURL(*root, "/v4/route", std::move(parameters));
}

}  // namespace quorvelkit
