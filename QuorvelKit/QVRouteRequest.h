// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelKit/QVRawValue.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <optional>

namespace quorvelkit {

/// The meaning of the time of a route request.
enum class QVRouteRequestType { ArrivalTime, DepartureTime };

template <>
inline constexpr auto rawValues<QVRouteRequestType> = std::to_array<RawValue<QVRouteRequestType>>({
    {QVRouteRequestType::ArrivalTime, "ArrivalTime"},
    {QVRouteRequestType::DepartureTime, "DepartureTime"},
});

/// Requests a route between two coordinates. The values are sent without checks.
class QUORVELKIT_EXPORT QVRouteRequest : public QVBaseRequest {
 public:
  /// A point in time of the system clock.
  using Instant = std::chrono::system_clock::time_point;

  QVRouteRequest() = delete;
  /// The default time is the time of construction. The arguments `speed` and `course` have no
  /// effect; use setSpeed() and setCourse().
  QVRouteRequest(Coordinate start, Coordinate end, Instant time = std::chrono::system_clock::now(),
                 QVRouteRequestType requestType = QVRouteRequestType::DepartureTime,
                 std::optional<double> speed = std::nullopt,
                 std::optional<double> course = std::nullopt);
  ~QVRouteRequest() override;

  /// The ends of the route, in degrees.
  Coordinate start() const { return start_; }
  void setStart(Coordinate start) { start_ = start; }
  Coordinate end() const { return end_; }
  void setEnd(Coordinate end) { end_ = end; }
  /// The time of departure or arrival. Sent in UTC, in whole seconds.
  Instant time() const { return time_; }
  void setTime(Instant time) { time_ = time; }
  /// Tells whether time() is the time of departure or of arrival.
  QVRouteRequestType requestType() const { return requestType_; }
  void setRequestType(QVRouteRequestType requestType) { requestType_ = requestType; }
  /// Speed and course of the vehicle at the start. Sent unchanged; not sent if absent.
  std::optional<double> speed() const { return speed_; }
  void setSpeed(std::optional<double> speed) { speed_ = speed; }
  std::optional<double> course() const { return course_; }
  void setCourse(std::optional<double> course) { course_ = course; }

  /// Returns the URL on the navigation server and replaces parameters() by the values above. If the
  /// cached configuration has no root URL of that server, returns nullopt and keeps parameters().
  std::optional<URL> url() override;

 private:
  Coordinate start_;
  Coordinate end_;
  Instant time_;
  QVRouteRequestType requestType_ = QVRouteRequestType::DepartureTime;
  std::optional<double> speed_;
  std::optional<double> course_;
};

}  // namespace quorvelkit
