// SPDX-License-Identifier: Apache-2.0
#include "sandbox/RouteQuery.h"

#include "sandbox/RFC3339Time.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace quorvelkit::sandbox {
namespace {

/// Reads parameters and keeps the first error.
class Reader {
 public:
  Reader(const QueryParameters& parameters, std::string& problem)
      : parameters_(parameters), problem_(problem) {}

  const std::string* text(const std::string& name) const {
    const auto found = parameters_.find(name);
    return found == parameters_.end() ? nullptr : &found->second;
  }

  std::string required(const std::string& name) {
    const std::string* value = text(name);
    if (value == nullptr) fail("The parameter " + name + " is missing.");
    return value == nullptr ? std::string() : *value;
  }

  double number(const std::string& name, double minimum, double maximum) {
    const std::string value = required(name);
    const char* const end = value.data() + value.size();
    double result = 0;
    const auto [stop, error] = std::from_chars(value.data(), end, result);
    if (error == std::errc::invalid_argument || stop != end || std::isnan(result)) {
      fail("The parameter " + name + " is not a number.");
    } else if (error != std::errc() || result < minimum || result > maximum) {
      fail("The parameter " + name + " is out of range.");
    }
    return result;
  }

  std::optional<double> optionalNumber(const std::string& name, double minimum, double maximum) {
    if (text(name) == nullptr) return std::nullopt;
    return number(name, minimum, maximum);
  }

  void fail(std::string problem) {
    if (problem_.empty()) problem_ = std::move(problem);
  }

 private:
  const QueryParameters& parameters_;
  std::string& problem_;
};

}  // namespace

std::optional<RouteQuery> RouteQuery::fromParameters(const QueryParameters& parameters,
                                                     std::string& problem) {
  problem.clear();
  Reader reader(parameters, problem);
  RouteQuery query;
  query.start.latitude = reader.number("startLat", -90, 90);
  query.start.longitude = reader.number("startLon", -180, 180);
  query.end.latitude = reader.number("endLat", -90, 90);
  query.end.longitude = reader.number("endLon", -180, 180);
  if (const auto time = parseRFC3339(reader.required("time"))) {
    query.time = *time;
  } else {
    reader.fail("The parameter time is not an RFC 3339 date-time such as 2017-03-01T14:05:00Z.");
  }
  const std::string type = reader.required("requestType");
  query.arriveBy = type == "ArrivalTime";
  if (!query.arriveBy && type != "DepartureTime") {
    reader.fail("The parameter requestType must be ArrivalTime or DepartureTime.");
  }
  query.speed = reader.optionalNumber("speed", 0, std::numeric_limits<double>::max());
  query.course = reader.optionalNumber("course", 0, 360);
  if (!problem.empty()) return std::nullopt;
  return query;
}

}  // namespace quorvelkit::sandbox
