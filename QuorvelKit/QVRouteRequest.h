// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelKit/QVRawValue.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <optional>

namespace quorvelkit {

/// What the time of a route request means.
enum class QVRouteRequestType { ArrivalTime, DepartureTime };

template <>
inline constexpr auto rawValues<QVRouteRequestType> = std::to_array<RawValue<QVRouteRequestType>>({
    {QVRouteRequestType::ArrivalTime, "ArrivalTime"},
    {QVRouteRequestType::DepartureTime, "DepartureTime"},
});

/// Asks for a route between two coordinates. Values are sent as they are, nothing is checked.
class QUORVELKIT_EXPORT QVRouteRequest : public QVBaseRequest {
 public:
  using Instant = std::chrono::system_clock::time_point;

  QVRouteRequest() = delete;
  /// The time is now, when none is given: the instant of construction, not of sending.
  ///
  /// The last two arguments have no effect. A request that is to carry speed and course gets them
  /// by setSpeed() and setCourse().
  QVRouteRequest(Coordinate start, Coordinate end, Instant time = std::chrono::system_clock::now(),
                 QVRouteRequestType requestType = QVRouteRequestType::DepartureTime,
                 std::optional<double> speed = std::nullopt,
                 std::optional<double> course = std::nullopt);
  ~QVRouteRequest() override;

  Coordinate start() const { return start_; }
  void setStart(Coordinate start) { start_ = start; }
  Coordinate end() const { return end_; }
  void setEnd(Coordinate end) { end_ = end; }
  /// When to leave or to arrive; sent in UTC, in whole seconds.
  Instant time() const { return time_; }
  void setTime(Instant time) { time_ = time; }
  QVRouteRequestType requestType() const { return requestType_; }
  void setRequestType(QVRouteRequestType requestType) { requestType_ = requestType; }
  /// How the vehicle moves at the start. Not sent when absent.
  std::optional<double> speed() const { return speed_; }
  void setSpeed(std::optional<double> speed) { speed_ = speed; }
  std::optional<double> course() const { return course_; }
  void setCourse(std::optional<double> course) { course_ = course; }

  /// The route resource under the navigation root of the cached configuration, with the values
  /// above as parameters(), which each call replaces. Absent, with the parameters as they were,
  /// while there is no such root.
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
