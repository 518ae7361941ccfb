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

std::string distance(double miles) {
  if (miles < 0.095) return std::to_string(std::lround(miles * 5280 / 50) * 50) + " ft";
  std::array<char, 32> text{};
  static_cast<void>(
      std::snprintf(text.data(), text.size(), miles < 9.95 ? "%.1f mi" : "%.0f mi", miles));
  return text.data();
}

std::string shield(const QVStreet* street) {
  const QVHighway* highway = street != nullptr ? street->highway() : nullptr;
  if (highway == nullptr || !highway->number()) return {};
  return std::string(rawValue(highway->direction())) + ' ' + std::to_string(*highway->number());
}

std::string streetName(const QVStreet* street) {
  return street != nullptr ? street->name().value_or("") : std::string();
}

std::vector<TableRow> rowsOf(const QVRoute& route) {
  std::vector<TableRow> rows;
  double previousTurn = 0;
  for (const QVPoint& point : route.points()) {
    const QVTurn* turn = point.turn();
    if (turn == nullptr) continue;
    const double here = point.distanceInMiles().value_or(previousTurn);
    // The distance of the previous row ends at this turn.
    if (!rows.empty()) rows.back()[0] = distance(here - previousTurn);
    previousTurn = here;
    rows.push_back({"", turn->instruction().value_or(std::string(rawValue(turn->direction()))),
                    streetName(turn->street()), shield(turn->street())});
  }
  return rows;
}

}  // namespace

void printDirections(std::ostream& out, const QVRouteRequest& request, const QVRoute& route) {
  const double minutes = route.totalDurationInMinutes().value_or(0);
  const auto rows = rowsOf(route);
  out << distance(route.totalDistanceInMiles().value_or(0)) << ", " << std::lround(minutes)
      << " min, " << rows.size() << " directions\n";
  if (request.requestType() == QVRouteRequestType::ArrivalTime) {
    const auto leave = request.time() - std::chrono::seconds(std::lround(minutes * 60));
    out << "Leave at " << DateFormatter::RFC3339DateFormatter().string(leave) << '\n';
  }
  out << '\n';
  std::vector<TableRow> table{{"to next", "direction", "street", "road"}};
  table.insert(table.end(), rows.begin(), rows.end());
  printTable(out, table);
}

std::string routeFeature(const QVRoute& route) {
  ValueArray line;
  for (const QVPoint& point : route.points()) {
    const Coordinate location = point.location();
    line.push_back(JSON::makeArray({location.longitude, location.latitude}));
  }
  // A LineString needs at least two positions.
  if (line.size() == 1) line.push_back(line.front());
  ValueMap properties;
  if (const auto distance = route.totalDistanceInMiles()) properties.set("miles", *distance);
  if (const auto duration = route.totalDurationInMinutes()) properties.set("minutes", *duration);
  const JSON feature = JSON::makeDictionary(
      {{"type", "Feature"},
       {"properties", Value(std::move(properties))},
       {"geometry",
        JSON::makeDictionary({{"type", "LineString"}, {"coordinates", Value(std::move(line))}})}});
  return feature.rawString(TextEncoding::utf8, JSONWritingOptions::none).value_or("");
}
