// SPDX-License-Identifier: Apache-2.0
#include "Directions.h"

#include "Table.h"

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelPlatform/DateFormatter.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <vector>

using namespace quorvelkit;

namespace {

/// More miles or minutes than this are no measure of a route on the earth.
constexpr double mostPlausible = 100'000;

std::string distance(std::optional<double> measure) {
  if (!plausible(measure)) return "unknown";
  const double miles = *measure;
  if (miles < 25.0 / 5280) return "< 50 ft";
  if (miles < 0.095) return std::to_string(std::lround(miles * 5280 / 50) * 50) + " ft";
  std::array<char, 32> text{};
  static_cast<void>(
      std::snprintf(text.data(), text.size(), miles < 9.95 ? "%.1f mi" : "%.0f mi", miles));
  return text.data();
}

std::optional<double> between(std::optional<double> begin, std::optional<double> end) {
  if (!begin || !end) return std::nullopt;
  return *end - *begin;
}

std::string duration(std::optional<double> minutes) {
  if (!plausible(minutes)) return "unknown time";
  return *minutes < 0.5 ? "< 1 min" : std::to_string(std::lround(*minutes)) + " min";
}

std::string shield(const QVStreet* street) {
  const QVHighway* highway = street != nullptr ? street->highway() : nullptr;
  const auto number = highway != nullptr ? highway->number() : std::nullopt;
  if (!number || *number <= 0 || *number > 99'999) return {};
  return std::string(rawValue(highway->direction())) + ' ' + std::to_string(*number);
}

std::string streetName(const QVStreet* street) {
  return street != nullptr ? street->name().value_or("") : std::string();
}

std::vector<TableRow> rowsOf(const QVRoute& route) {
  std::vector<TableRow> rows;
  std::optional<double> previousTurn = 0;
  for (const QVPoint& point : route.points()) {
    const QVTurn* turn = point.turn();
    if (turn == nullptr) continue;
    const auto here = plausible(point.distanceInMiles());
    // The distance of the previous row ends at this turn.
    if (!rows.empty()) rows.back()[0] = distance(between(previousTurn, here));
    previousTurn = here;
    rows.push_back({"", turn->instruction().value_or(std::string(rawValue(turn->direction()))),
                    streetName(turn->street()), shield(turn->street())});
  }
  return rows;
}

}  // namespace

std::optional<double> plausible(std::optional<double> measure) {
  if (!measure || !(*measure >= 0 && *measure <= mostPlausible)) return std::nullopt;
  return measure;
}

void printDirections(std::ostream& out, const QVRouteRequest& request, const QVRoute& route) {
  const auto miles = plausible(route.totalDistanceInMiles());
  const auto minutes = plausible(route.totalDurationInMinutes());
  const auto rows = rowsOf(route);
  out << (miles ? distance(miles) : "unknown distance") << ", " << duration(minutes) << ", "
      << rows.size() << (rows.size() == 1 ? " direction\n" : " directions\n");
  if (minutes && request.requestType() == QVRouteRequestType::ArrivalTime) {
    const auto leave = request.time() - std::chrono::seconds(std::lround(*minutes * 60));
    out << "Leave at " << DateFormatter::RFC3339DateFormatter().string(leave) << '\n';
  }
  out << '\n';
  std::vector<TableRow> table{{"to next", "direction", "street", "road"}};
  table.insert(table.end(), rows.begin(), rows.end());
  printTable(out, table);
}

JSON routeGeometry(const QVRoute& route) {
  ValueArray line;
  for (const QVPoint& point : route.points()) {
    const Coordinate location = point.location();
    line.push_back(JSON::makeArray({location.longitude, location.latitude}));
  }
  // A LineString needs at least two positions.
  if (line.size() == 1) line.push_back(line.front());
  return JSON::makeDictionary({{"type", "LineString"}, {"coordinates", Value(std::move(line))}});
}

std::string routeFeature(const QVRoute& route) {
  ValueMap properties;
  if (const auto miles = plausible(route.totalDistanceInMiles())) properties.set("miles", *miles);
  if (const auto minutes = plausible(route.totalDurationInMinutes()))
    properties.set("minutes", *minutes);
  const JSON feature = JSON::makeDictionary({{"type", "Feature"},
                                             {"properties", Value(std::move(properties))},
                                             {"geometry", routeGeometry(route)}});
  return feature.rawString(TextEncoding::utf8, JSONWritingOptions::none).value_or("");
}
